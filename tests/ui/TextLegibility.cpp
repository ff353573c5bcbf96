#include "ui/TextLegibility.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTabBar>
#include <QTableView>
#include <qwt_legend_label.h>
#include <qwt_scale_widget.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <type_traits>

namespace {

struct Text {
    QWidget *widget;
    QString text;
    QSize needed;
    QSize given;
};

int widthOf(const QWidget &widget, const QString &text) {
    return widget.fontMetrics().horizontalAdvance(text);
}

Text wholeOf(QWidget &widget, const QString &text) {
    return {&widget, text, widget.sizeHint(), widget.size()};
}

Text ofLabel(QLabel &label) {
    if (!label.wordWrap()) {
        return wholeOf(label, label.text());
    }
    const QSize needed(label.minimumSizeHint().width(), label.heightForWidth(label.width()));
    return {&label, label.text(), needed, label.size()};
}

// A box's own hint counts its contents, too.
Text ofGroup(QGroupBox &group) {
    return {&group, group.title(), QSize(widthOf(group, group.title()), 0), group.contentsRect().size()};
}

QVector<Text> ofHeader(QHeaderView &header) {
    QVector<Text> texts;
    for (int i = 0; i < header.count(); ++i) {
        const QString text = header.model()->headerData(i, header.orientation()).toString();
        const bool isRow = header.orientation() == Qt::Horizontal;
        const QSize needed(header.sectionSizeHint(i), 0);
        const QSize given(header.sectionSize(i), 0);
        texts.append(
            {&header, text, isRow ? needed : needed.transposed(), isRow ? given : given.transposed()});
    }
    return texts;
}

QVector<Text> ofCells(QTableView &table) {
    QVector<Text> texts;
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        for (int row = 0; row < table.model()->rowCount(); ++row) {
            const QModelIndex index = table.model()->index(row, column);
            texts.append({&table, index.data().toString(), table.sizeHintForIndex(index),
                          QSize(table.columnWidth(column), table.rowHeight(row))});
        }
    }
    return texts;
}

QVector<Text> ofTabs(QTabBar &bar) {
    QVector<Text> texts{wholeOf(bar, QString())};
    for (int i = 0; i < bar.count(); ++i) {
        texts.append({&bar, bar.tabText(i), QSize(widthOf(bar, bar.tabText(i)), bar.fontMetrics().height()),
                      bar.tabRect(i).size()});
    }
    return texts;
}

Text ofAxis(QwtScaleWidget &axis) {
    const QSize needed = axis.title().textSize(axis.font()).toSize();
    const bool isLying = axis.alignment() == QwtScaleDraw::BottomScale;
    return {&axis, axis.title().text(), QSize(needed.width(), 0),
            isLying ? axis.contentsRect().size() : axis.contentsRect().size().transposed()};
}

QVector<Text> textsOf(QWidget &widget) {
    if (auto *label = qobject_cast<QLabel *>(&widget)) {
        return {ofLabel(*label)};
    }
    if (auto *button = qobject_cast<QAbstractButton *>(&widget)) {
        return {wholeOf(*button, button->text())};
    }
    if (auto *legend = qobject_cast<QwtLegendLabel *>(&widget)) {
        return {wholeOf(*legend, legend->text().text())};
    }
    if (auto *box = qobject_cast<QComboBox *>(&widget)) {
        return {wholeOf(*box, box->currentText())};
    }
    if (auto *group = qobject_cast<QGroupBox *>(&widget)) {
        return {ofGroup(*group)};
    }
    if (auto *bar = qobject_cast<QProgressBar *>(&widget)) {
        return {
            {bar, bar->text(), QSize(widthOf(*bar, bar->text()), bar->fontMetrics().height()), bar->size()}};
    }
    if (auto *tabs = qobject_cast<QTabBar *>(&widget)) {
        return ofTabs(*tabs);
    }
    if (auto *header = qobject_cast<QHeaderView *>(&widget)) {
        return ofHeader(*header);
    }
    if (auto *table = qobject_cast<QTableView *>(&widget)) {
        return ofCells(*table);
    }
    if (auto *axis = qobject_cast<QwtScaleWidget *>(&widget)) {
        return {ofAxis(*axis)};
    }
    return {};
}

QVector<Text> textsIn(QWidget &window) {
    QVector<Text> texts;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible()) {
            texts += textsOf(*widget);
        }
    }
    return texts;
}

QString nameOf(const QWidget &widget, const QString &text) {
    return QString::fromLatin1(widget.metaObject()->className()) + ": " + text + ": ";
}

QString textOf(const QSize &size) {
    return QString::number(size.width()) + " x " + QString::number(size.height());
}

// What scrolls may be larger than where it is seen.
bool isInItsParent(const QWidget &widget) {
    const QWidget *parent = widget.parentWidget();
    const auto *area = parent->parentWidget() == nullptr
                           ? nullptr
                           : qobject_cast<QAbstractScrollArea *>(parent->parentWidget());
    const bool scrolls = area != nullptr && area->viewport() == parent;
    return widget.isWindow() || scrolls || parent->rect().contains(widget.geometry());
}

// 1 for two equal colours, 21 for black and white.
double contrastOf(QRgb first, QRgb second) {
    const auto channel = [](int value) {
        const double part = value / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&channel](QRgb colour) {
        return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour)) +
               0.0722 * channel(qBlue(colour));
    };
    const auto [low, high] = std::minmax({luminance(first), luminance(second)});
    return (high + 0.05) / (low + 0.05);
}

// The highest that a pixel has to what is there without the text, which `write` writes or takes away.
double contrastOfText(QWidget &widget, const std::function<void(bool)> &write) {
    const QRect place(widget.mapTo(widget.window(), QPoint()), widget.size());
    const QSize least = widget.minimumSize();
    const QSize most = widget.maximumSize();
    widget.setFixedSize(widget.size());
    const QImage with = widget.window()->grab(place).toImage();
    write(false);
    const QImage without = widget.window()->grab(place).toImage();
    write(true);
    widget.setMinimumSize(least);
    widget.setMaximumSize(most);
    double highest = 1;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            highest = std::max(highest, contrastOf(with.pixel(x, y), without.pixel(x, y)));
        }
    }
    return highest;
}

} // namespace

QStringList cutTexts(QWidget &window) {
    QStringList cut;
    for (const Text &text : textsIn(window)) {
        if (text.needed.width() > text.given.width() || text.needed.height() > text.given.height()) {
            cut += nameOf(*text.widget, text.text) + textOf(text.needed) + " in " + textOf(text.given);
        }
        if (!isInItsParent(*text.widget)) {
            cut += nameOf(*text.widget, text.text) + "sticks out";
        }
    }
    return cut;
}

QStringList faintTexts(QWidget &window) {
    constexpr double legible = 4.5;      // what guides for legible pages ask for
    constexpr double legibleColours = 3; // and for coloured marks
    QStringList faint;
    const auto check = [&faint](auto &widget, const auto &text, const QString &name, double least) {
        if (!widget.isVisible() || !widget.isEnabled() || name.isEmpty()) {
            return;
        }
        using Text = std::decay_t<decltype(text)>;
        const double contrast =
            contrastOfText(widget, [&](bool isShown) { widget.setText(isShown ? text : Text()); });
        if (contrast < least) {
            faint += nameOf(widget, name) + QString::number(contrast);
        }
    };
    for (auto *label : window.findChildren<QLabel *>()) {
        check(*label, label->text(), label->text(), legible);
    }
    for (auto *button : window.findChildren<QAbstractButton *>()) {
        check(*button, button->text(), button->text(), legible);
    }
    for (auto *label : window.findChildren<QwtLegendLabel *>()) {
        check(*label, label->text(), label->text().text(), legibleColours);
    }
    return faint;
}

int textCount(QWidget &window) {
    const QVector<Text> texts = textsIn(window);
    return static_cast<int>(
        std::count_if(texts.begin(), texts.end(), [](const Text &text) { return !text.text.isEmpty(); }));
}
