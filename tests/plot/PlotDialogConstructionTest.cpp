#include "plot/PlotWindow.h"
#include "ui/MetaObjectLists.h"

#include <QDoubleValidator>
#include <QHBoxLayout>
#include <qwt_scale_draw.h>

namespace {

const QString key = "GA:DATA:X";

// The texts at the major ticks of the time axis as they are drawn; asking for a label anew would change it.
QStringList drawnLabels(const QwtPlot &plot) {
    struct Reachable : QwtScaleDraw {
        using QwtScaleDraw::tickLabel;
    };
    const auto tickLabel = &Reachable::tickLabel;
    const QwtScaleDraw *axis = plot.axisScaleDraw(QwtPlot::xBottom);
    QStringList texts;
    for (const double tick : axis->scaleDiv().ticks(QwtScaleDiv::MajorTick)) {
        texts += (axis->*tickLabel)(plot.axisFont(QwtPlot::xBottom), tick).text();
    }
    return texts;
}

QStringList namesOf(const QLayout &row) {
    QStringList names;
    for (int i = 0; i < row.count(); ++i) {
        QLayoutItem *item = row.itemAt(i);
        if (const auto *button = qobject_cast<QToolButton *>(item->widget())) {
            names += button->toolTip();
        } else if (const auto *named = qobject_cast<QPushButton *>(item->widget())) {
            names += named->text();
        } else if (const auto *edit = qobject_cast<QLineEdit *>(item->widget())) {
            names += edit->accessibleName();
        } else {
            names += item->spacerItem() != nullptr ? "stretch" : "?";
        }
    }
    return names;
}

} // namespace

class PlotDialogConstructionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        data_.emplace();
        data_->add(shortBlock());
    }

    void theClassAndItsSlotsAreNamedForConnections() {
        const QMetaObject &meta = PlotDialog::staticMetaObject;
        QCOMPARE(meta.className(), "PlotDialog");
        QCOMPARE(meta.superClass()->className(), "QDialog");
        QCOMPARE(ownSignals(meta), QStringList());
        QCOMPARE(ownSlots(meta).mid(0, 10),
                 (QStringList{"OnZoomed(QRectF)", "OnZoomLeft()", "OnZoomRight()", "OnAutoScaleFull()",
                              "OnAutoScaleVertical()", "OnAutoScaleHorizontal()", "OnPrintClicked()",
                              "OnLegendChecked(QVariant,bool,int)", "OnYMinMaxApplyClicked()",
                              "OnYMinMaxEditChanged()"}));
    }

    void theWindowHasItsSizeAndTitleAndTakesDrops() {
        const PlotWindow window(*data_, key);
        QVERIFY(window.dialog().testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY(window.dialog().acceptDrops());
        QCOMPARE(window.dialog().minimumSize(), QSize(150, 150));
        QCOMPARE(window.dialog().size(), QSize(700, 350));
        QCOMPARE(window.dialog().windowTitle(), "File Viewer");
    }

    void theWindowCanBeMadeAsSmallAsItsMinimumSays() {
        PlotWindow window(*data_, key);
        QVERIFY(window.show());
        window.dialog().resize(1, 1);
        QVERIFY(window.dialog().width() >= 150);
        QVERIFY(window.dialog().height() >= 150);
        QVERIFY(window.dialog().grab().width() > 0);
    }

    void thePlotStandsAboveOneRowOfControls() {
        const PlotWindow window(*data_, key);
        const QLayout *layout = window.dialog().layout();
        QCOMPARE(layout->count(), 2);
        QCOMPARE(layout->itemAt(0)->widget(), &window.plot());
        const QLayout *row = layout->itemAt(1)->layout();
        QVERIFY(row != nullptr);
        QCOMPARE(namesOf(*row),
                 (QStringList{"Go to previous zoom level", "Go to next zoom level",
                              "Auto scale to view entire data set", "Auto scale horizontally",
                              "Auto scale vertically", "Ymin Ymax", "Lowest value of the left axis",
                              "Highest value of the left axis", "stretch", "Print...", "Close"}));
    }

    void theControlsFollowEachOtherFromLeftToRightBelowThePlot() {
        PlotWindow window(*data_, key);
        QVERIFY(window.show());
        const QWidget *row[] = {&window.previous(),   &window.next(),     &window.full(),
                                &window.horizontal(), &window.vertical(), &window.yRange(),
                                &window.yMinimum(),   &window.yMaximum(), &window.print(),
                                &window.closeButton()};
        int right = -1;
        for (const QWidget *control : row) {
            QVERIFY(control->isVisible());
            QVERIFY(control->x() > right);
            QVERIFY(control->y() >= window.plot().geometry().bottom());
            right = control->geometry().right();
        }
    }

    void theFiveZoomButtonsAreFlatWithIconsOf22PixelsAndCannotBeUsedYet() {
        const PlotWindow window(*data_, key);
        QVector<QImage> icons;
        for (const QToolButton *button :
             {&window.previous(), &window.next(), &window.full(), &window.horizontal(), &window.vertical()}) {
            QVERIFY(button->autoRaise());
            QCOMPARE(button->iconSize(), QSize(22, 22));
            QVERIFY(!button->isEnabled());
            const QImage icon = button->icon().pixmap(22, 22).toImage();
            QCOMPARE(icon.size(), QSize(22, 22));
            QVERIFY2(!icons.contains(icon), "two buttons have the same icon");
            icons.append(icon);
        }
        QCOMPARE(window.usableButtons(), "");
    }

    void aZoomButtonThatCannotBeUsedLooksIt() {
        const PlotWindow window(*data_, key);
        const QIcon icon = window.full().icon();
        QVERIFY(icon.pixmap(22, 22, QIcon::Normal).toImage() !=
                icon.pixmap(22, 22, QIcon::Disabled).toImage());
        QCOMPARE(icon.pixmap(44, 44).size(), QSize(44, 44));
    }

    void theEditsTakeNumbersWithAPointInEveryLocale() {
        const PlotWindow window(*data_, key);
        for (const QLineEdit *edit : {&window.yMinimum(), &window.yMaximum()}) {
            const auto *validator = qobject_cast<const QDoubleValidator *>(edit->validator());
            QVERIFY(validator != nullptr);
            int position = 0;
            for (QString text : {"1.5", "-2", "1e-3", "1.25e+10"}) {
                QCOMPARE(validator->validate(text, position), QValidator::Acceptable);
            }
            for (QString text : {"1,5", "1,500", "x", "1.5.5"}) {
                QCOMPARE(validator->validate(text, position), QValidator::Invalid);
            }
        }
    }

    void theVariableIsDrawnOnTheLeftAxis() {
        const PlotWindow window(*data_, key);
        QCOMPARE(window.plot().entries().size(), std::size_t{3});
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{100});
        QCOMPARE(window.curve("GA:DATA:X", "max").yAxis(), int(QwtPlot::yLeft));
        QVERIFY(!window.plot().axisEnabled(QwtPlot::yRight));
        QCOMPARE(window.plot().axisTitle(QwtPlot::xBottom).text(), "Time (UTC)");
    }

    void theZoomHistoryHoldsExactlyTheBaseThatSpansAllThereIs() {
        const PlotWindow window(*data_, key);
        const QRectF all(plotStart, 0, 99, 99);
        QCOMPARE(window.stack(), (QVector<QRectF>{all}));
        QCOMPARE(window.index(), 0);
        QCOMPARE(window.zoomer().zoomBase(), all);
        QCOMPARE(window.shown(), all);
        QCOMPARE(window.zoomer().trackerMode(), QwtPicker::AlwaysOn);
    }

    void theBaseIsAsWideAsTheAveragesOfALongTime() {
        data_->add(longBlock());
        const PlotWindow window(*data_, "LONG:DATA:X");
        const PlotSeries &series = window.series("LONG:DATA:X");
        QVERIFY(series.size() < 5000U);
        QCOMPARE(window.stack(),
                 (QVector<QRectF>{QRectF(series.times().front(), 0,
                                         series.times().back() - series.times().front(), 7105)}));
    }

    void theFirstLabelOfTheTimeAxisHasTheDateAndTheOthersHaveNone() {
        data_->add({"HOUR", "X", 3600, [](int i) { return std::to_string(i); }});
        PlotWindow window(*data_, "HOUR:DATA:X");
        QVERIFY(window.show());
        QVERIFY(window.dialog().grab().width() > 0);
        QCOMPARE(drawnLabels(window.plot()),
                 (QStringList{"12:30\nSep 13\n2020", "12:45\n", "13:00\n", "13:15\n"}));
    }

    void theEditsShowTheRangeOfTheBase() {
        data_->add({"GB", "X", 2, [](int i) { return std::string(i == 0 ? "-1.5" : "0.47530864"); }});
        QCOMPARE(PlotWindow(*data_, "GA:DATA:Y").yTexts(), "401 to 500");
        QCOMPARE(PlotWindow(*data_, "GB:DATA:X").yTexts(), "-1.5 to 0.475309");
    }

    void theTextsAroundThePlotAreLegibleOnADarkDesktopToo() {
        PlotWindow window(*data_, key);
        const QPalette light = QApplication::palette();
        const auto contrast = [&window](const QColor &ink) {
            const QColor paper = window.plot().palette().color(QPalette::Window);
            return std::abs(paper.lightness() - ink.lightness());
        };
        const auto axisInk = [&window] { return window.plot().palette().color(QPalette::WindowText); };
        for (const QPalette &desktop : {QPalette(QColor(49, 54, 59), QColor(42, 46, 50)), light}) {
            QApplication::setPalette(desktop); // as when the desktop changes while the window is open
            QVERIFY(contrast(axisInk()) > 150);
            QVERIFY(contrast(Qt::black) > 150);
            QVERIFY(contrast(Qt::red) > 100);
            QVERIFY(contrast(Qt::blue) > 100);
            const bool isDark = desktop.color(QPalette::Window).lightness() < 128;
            QCOMPARE(window.plot().autoFillBackground(), isDark);
        }
    }

    void thePlotHasTheFocus() {
        PlotWindow window(*data_, key);
        QVERIFY(window.show());
        window.dialog().activateWindow();
        QCOMPARE(window.dialog().focusWidget(), &window.plot());
    }

    void everyConnectionOfTheControlsIsThere_data() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("slot");
        const QString clicked = "clicked(bool)";
        QTest::newRow("zoomer") << "zoomer"
                                << "zoomed(QRectF)"
                                << "OnZoomed(QRectF)";
        QTest::newRow("previous") << "previous" << clicked << "OnZoomLeft()";
        QTest::newRow("next") << "next" << clicked << "OnZoomRight()";
        QTest::newRow("full") << "full" << clicked << "OnAutoScaleFull()";
        QTest::newRow("vertical") << "vertical" << clicked << "OnAutoScaleVertical()";
        QTest::newRow("horizontal") << "horizontal" << clicked << "OnAutoScaleHorizontal()";
        QTest::newRow("close") << "close" << clicked << "close()";
        QTest::newRow("print") << "print" << clicked << "OnPrintClicked()";
        QTest::newRow("legend") << "legend"
                                << "checked(QVariant,bool,int)"
                                << "OnLegendChecked(QVariant,bool,int)";
        QTest::newRow("range") << "range" << clicked << "OnYMinMaxApplyClicked()";
        QTest::newRow("minimum") << "minimum"
                                 << "editingFinished()"
                                 << "OnYMinMaxEditChanged()";
        QTest::newRow("maximum") << "maximum"
                                 << "editingFinished()"
                                 << "OnYMinMaxEditChanged()";
    }
    void everyConnectionOfTheControlsIsThere() {
        QFETCH(QString, control);
        QFETCH(QString, signal);
        QFETCH(QString, slot);
        const PlotWindow window(*data_, key);
        const QHash<QString, QObject *> controls{{"zoomer", &window.zoomer()},
                                                 {"previous", &window.previous()},
                                                 {"next", &window.next()},
                                                 {"full", &window.full()},
                                                 {"vertical", &window.vertical()},
                                                 {"horizontal", &window.horizontal()},
                                                 {"close", &window.closeButton()},
                                                 {"print", &window.print()},
                                                 {"legend", &window.plot().checkableLegend()},
                                                 {"range", &window.yRange()},
                                                 {"minimum", &window.yMinimum()},
                                                 {"maximum", &window.yMaximum()}};
        // Only a connection that exists can be cut.
        QVERIFY(QObject::disconnect(controls[control], ('2' + signal).toLatin1(), &window.dialog(),
                                    ('1' + slot).toLatin1()));
    }

private:
    std::optional<PlotData> data_;
};

QTEST_MAIN(PlotDialogConstructionTest)
#include "PlotDialogConstructionTest.moc"
