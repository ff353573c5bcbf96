#include "plot/PlotDialog.h"

#include "loading/QDataSet.h"
#include "plot/PlotAccessibility.h"
#include "plot/PlotPicture.h"
#include "plot/PlotZoomer.h"
#include "plot/ZoomIcons.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDoubleValidator>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <qwt_legend.h>
#include <qwt_plot_canvas.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// Text files may be dropped, too; no variable has a longer name.
constexpr int longestKey = 4096;

QLineEdit *makeYEdit(const QString &accessibleName) {
    auto *edit = new QLineEdit;
    auto *validator = new QDoubleValidator(edit);
    // A decimal point in every locale and no comma, as the texts are written and read.
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    validator->setLocale(locale);
    edit->setValidator(validator);
    edit->setAccessibleName(accessibleName);
    edit->setAccessibleDescription(PlotDialog::tr("A number with a decimal point; Return applies it"));
    // A variable dropped here is meant for the plot.
    edit->setAcceptDrops(false);
    return edit;
}

std::optional<double> numberIn(const QLineEdit &edit) {
    bool isNumber = false;
    const double number = edit.text().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// The curves have the colours of ink on paper. In a dark window the texts around them need a light sheet,
// too.
void adaptToDesktop(QwtPlot &plot, const QPalette &desktop) {
    constexpr int dark = 128; // of 255
    constexpr int margin = 6;
    const bool isDark = desktop.color(QPalette::Window).lightness() < dark;
    const int border = isDark ? margin : 0;
    plot.setPalette(isDark ? QPalette(QColor(239, 239, 239)) : QPalette());
    plot.setAutoFillBackground(isDark);
    plot.setContentsMargins(border, border, border, border);
}

QString yText(double value) {
    constexpr int digits = 6;
    return QString::number(value, 'g', digits);
}

} // namespace

PlotDialog::PlotDialog(QWidget *parent, const QDataSet *dataSet, const QString &key)
    : QDialog(parent),
      dataSet_(dataSet),
      plot_(new TimeSeriesPlot(*dataSet, key, this)),
      zoomer_(new PlotZoomer(plot_->canvas(), plot_->timezone())) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setMinimumSize(150, 150);
    resize(700, 350);
    setWindowTitle(tr("File Viewer"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);

    adaptToDesktop(*plot_, palette());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plot_, 1);
    layout->addLayout(makeControls());
    makeActions();
    connectAll();
    describeForScreenReaders(*plot_);
    qobject_cast<QwtPlotCanvas *>(plot_->canvas())->setFocusIndicator(QwtPlotCanvas::CanvasFocusIndicator);

    zoomer_->restart(withArea(plot_->wholeRect()));
    plot_->restartLabels();
    updateHint();
    showYRange(zoomer_->zoomRect());
    plot_->replot();
    plot_->setFocus();
}

PlotDialog::~PlotDialog() = default;

QToolButton *PlotDialog::makeToolButton(const QIcon &icon, const QString &toolTip) {
    auto *button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(icon);
    button->setIconSize(QSize(22, 22));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setEnabled(false);
    return button;
}

QBoxLayout *PlotDialog::makeControls() {
    previousButton_ = makeToolButton(previousZoomIcon(), tr("Go to previous zoom level"));
    nextButton_ = makeToolButton(nextZoomIcon(), tr("Go to next zoom level"));
    fullButton_ = makeToolButton(scaleFullIcon(), tr("Auto scale to view entire data set"));
    horizontalButton_ = makeToolButton(scaleHorizontalIcon(), tr("Auto scale horizontally"));
    verticalButton_ = makeToolButton(scaleVerticalIcon(), tr("Auto scale vertically"));
    yRangeButton_ = new QPushButton(tr("Ymin Ymax"));
    yRangeButton_->setAccessibleDescription(tr("Shows the range between the two values on the left axis"));
    yMinimumEdit_ = makeYEdit(tr("Lowest value of the left axis"));
    yMaximumEdit_ = makeYEdit(tr("Highest value of the left axis"));
    printButton_ = new QPushButton(tr("Print..."));
    printButton_->setAccessibleDescription(tr("Prints the plot, as Ctrl+P does"));
    closeButton_ = new QPushButton(tr("Close"));
    closeButton_->setAccessibleDescription(tr("Closes this window, as Escape does"));

    auto *row = new QHBoxLayout;
    for (QToolButton *button :
         {previousButton_, nextButton_, fullButton_, horizontalButton_, verticalButton_}) {
        row->addWidget(button);
    }
    row->addWidget(yRangeButton_);
    row->addWidget(yMinimumEdit_);
    row->addWidget(yMaximumEdit_);
    row->addStretch();
    row->addWidget(printButton_);
    row->addWidget(closeButton_);
    return row;
}

// What the context menu offers, by the keys that people try.
void PlotDialog::makeActions() {
    const auto add = [this](const QString &text, const QList<QKeySequence> &keys, const char *slot) {
        auto *action = new QAction(text, this);
        action->setShortcuts(keys);
        connect(action, SIGNAL(triggered()), slot);
        addAction(action);
        return action;
    };
    const auto addZoom = [this, &add](QToolButton *button, const QList<QKeySequence> &keys,
                                      const char *slot) {
        QAction *action = add(button->toolTip(), keys, slot);
        action->setIcon(button->icon());
        action->setEnabled(false);
        zoomControls_.append({button, action});
    };
    const auto addSeparator = [this] {
        auto *separator = new QAction(this);
        separator->setSeparator(true);
        addAction(separator);
    };
    add(tr("Copy picture"), {QKeySequence::Copy}, SLOT(copyPicture()));
    add(tr("Save picture..."), {QKeySequence::Save}, SLOT(savePicture()));
    add(tr("Print..."), {QKeySequence::Print}, SLOT(OnPrintClicked()));
    addSeparator();
    addZoom(previousButton_, {QStringLiteral("Alt+Left"), QStringLiteral("-")}, SLOT(OnZoomLeft()));
    addZoom(nextButton_, {QStringLiteral("Alt+Right"), QStringLiteral("+")}, SLOT(OnZoomRight()));
    addZoom(fullButton_, {}, SLOT(OnAutoScaleFull()));
    addZoom(horizontalButton_, {}, SLOT(OnAutoScaleHorizontal()));
    addZoom(verticalButton_, {}, SLOT(OnAutoScaleVertical()));
    addSeparator();
    add(tr("Close"), {Qt::Key_Escape}, SLOT(giveUpOrClose()));
    connect(new QShortcut(QStringLiteral("Ctrl+W"), this), SIGNAL(activated()), SLOT(close()));
}

void PlotDialog::connectAll() {
    connect(zoomer_, SIGNAL(zoomed(QRectF)), SLOT(OnZoomed(QRectF)));
    connect(previousButton_, SIGNAL(clicked(bool)), SLOT(OnZoomLeft()));
    connect(nextButton_, SIGNAL(clicked(bool)), SLOT(OnZoomRight()));
    connect(fullButton_, SIGNAL(clicked(bool)), SLOT(OnAutoScaleFull()));
    connect(verticalButton_, SIGNAL(clicked(bool)), SLOT(OnAutoScaleVertical()));
    connect(horizontalButton_, SIGNAL(clicked(bool)), SLOT(OnAutoScaleHorizontal()));
    connect(closeButton_, SIGNAL(clicked(bool)), SLOT(close()));
    connect(printButton_, SIGNAL(clicked(bool)), SLOT(OnPrintClicked()));
    connect(&plot_->checkableLegend(), SIGNAL(checked(QVariant, bool, int)),
            SLOT(OnLegendChecked(QVariant, bool, int)));
    connect(yRangeButton_, SIGNAL(clicked(bool)), SLOT(OnYMinMaxApplyClicked()));
    connect(yMinimumEdit_, SIGNAL(editingFinished()), SLOT(OnYMinMaxEditChanged()));
    connect(yMaximumEdit_, SIGNAL(editingFinished()), SLOT(OnYMinMaxEditChanged()));
}

void PlotDialog::OnZoomed(const QRectF &rect) {
    updateButtons();
    loadView();
    if (!zoomer_->zoomStack().isEmpty()) {
        showYRange(rect);
    }
    plot_->replot();
}

void PlotDialog::updateButtons() {
    const int size = zoomer_->zoomStack().size();
    const int index = static_cast<int>(zoomer_->zoomRectIndex());
    const bool isZoomed = size > 0 && index != 0;
    for (const auto &[button, action] : zoomControls_) {
        const bool isUsable = button == nextButton_ ? index < size - 1 : isZoomed;
        button->setEnabled(isUsable);
        action->setEnabled(isUsable);
    }
}

// What to do where nothing is drawn. At the base the right button leads no further.
void PlotDialog::updateHint() {
    if (plot_->wholeRange().isEmpty()) {
        plot_->setEmptyHint(tr("Nothing to draw: there is no value"));
    } else if (zoomer_->isAtBase()) {
        plot_->setEmptyHint(tr("Nothing to draw in this view: draw a rectangle to see single records"));
    } else {
        plot_->setEmptyHint(tr("Nothing to draw in this view: click the right button to see everything"));
    }
}

// At the base everything is in view.
void PlotDialog::loadView() {
    viewIsLoaded_ = true;
    updateHint();
    if (zoomer_->zoomStack().isEmpty() || zoomer_->isAtBase()) {
        plot_->loadEverything();
        return;
    }
    const QRectF rect = zoomer_->zoomRect();
    plot_->loadWindow(rect.left(), rect.right());
}

// Zooms to a rectangle that has been chosen after loading other points than those in view.
void PlotDialog::zoomTo(const QRectF &rect) {
    viewIsLoaded_ = false;
    zoomer_->zoom(withArea(rect));
    if (!viewIsLoaded_) {
        loadView();
        plot_->replot();
    }
    showYRange(zoomer_->zoomRect());
}

void PlotDialog::OnZoomLeft() {
    if (zoomer_->zoomRectIndex() != 0) {
        zoomer_->zoom(-1);
    }
}

void PlotDialog::OnZoomRight() {
    if (static_cast<int>(zoomer_->zoomRectIndex()) < zoomer_->zoomStack().size() - 1) {
        zoomer_->zoom(1);
    }
}

// Of every curve, hidden or not: this is where hidden curves are found again.
void PlotDialog::OnAutoScaleFull() {
    plot_->loadEverything();
    zoomTo(plot_->wholeRect());
}

void PlotDialog::OnAutoScaleHorizontal() {
    plot_->loadEverything();
    const Extent times = plot_->windows(TimeSeriesPlot::Curves::visible);
    const QRectF rect = zoomer_->zoomRect();
    zoomTo(times.isEmpty() ? rect : withTimes(rect, times));
}

void PlotDialog::OnAutoScaleVertical() {
    const Extent values = plot_->loadedRange(TimeSeriesPlot::Curves::visible);
    if (values.isEmpty()) {
        return;
    }
    zoomTo(withValues(zoomer_->zoomRect(), values));
}

void PlotDialog::OnLegendChecked(const QVariant &info, bool on, int) {
    QwtPlotItem *item = plot_->infoToItem(info);
    if (item == nullptr || item->rtti() != QwtPlotItem::Rtti_PlotCurve) {
        return;
    }
    item->setVisible(on);
    if (!on && plot_->isEveryCurveHidden()) {
        item->setVisible(true);
        plot_->setLegendChecked(*item, true);
        return;
    }
    viewIsLoaded_ = false;
    OnAutoScaleVertical();
    if (!viewIsLoaded_) {
        plot_->replot();
    }
}

void PlotDialog::showYRange(const QRectF &rect) {
    if (yRangeIsUsers_) {
        return;
    }
    const auto [low, high] = std::minmax({rect.top() + rect.height(), rect.top()});
    yMinimumEdit_->setText(yText(low));
    yMaximumEdit_->setText(yText(high));
}

// Once the user has entered a range, zooming leaves the edits alone: it is there to be applied again.
void PlotDialog::OnYMinMaxEditChanged() {
    if (numberIn(*yMinimumEdit_) && numberIn(*yMaximumEdit_)) {
        yRangeIsUsers_ = true;
    }
}

void PlotDialog::OnYMinMaxApplyClicked() {
    const auto first = numberIn(*yMinimumEdit_);
    const auto second = numberIn(*yMaximumEdit_);
    if (!first || !second) {
        return;
    }
    const auto [low, high] = std::minmax({*first, *second});
    const QRectF rect = zoomer_->zoomRect();
    const bool isShown = rect.top() == low && rect.height() == high - low;
    if (isShown || !std::isfinite(high - low)) {
        return;
    }
    zoomer_->zoom(withArea(withValues(rect, {low, high})));
}

void PlotDialog::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        adaptToDesktop(*plot_, palette());
    }
}

void PlotDialog::dragEnterEvent(QDragEnterEvent *event) {
    if (event->mimeData()->hasFormat(QStringLiteral("text/plain"))) {
        event->acceptProposedAction();
    }
}

void PlotDialog::dropEvent(QDropEvent *event) {
    const QString key = event->mimeData()->text();
    if (key.size() > longestKey) {
        return;
    }
    event->acceptProposedAction();
    const bool isOnRightHalf = event->pos().x() > width() / 2;
    addVariable(key, isOnRightHalf ? TimeSeriesPlot::Side::right : TimeSeriesPlot::Side::left);
}

void PlotDialog::addVariable(const QString &key, TimeSeriesPlot::Side side) {
    const bool wasEmpty = plot_->wholeRange().isEmpty();
    plot_->addVariable(key, side);
    describeForScreenReaders(*plot_);
    extendZoomBase(wasEmpty);
    plot_->replot();
}

// The base of a window that had nothing to draw shows no data: it gives way instead of being widened.
void PlotDialog::extendZoomBase(bool wasEmpty) {
    const QRectF base = zoomer_->zoomBase();
    const QRectF widened = wasEmpty ? withArea(plot_->wholeRect()) : plot_->widened(base);
    if (widened != base) {
        if (zoomer_->isAtBase()) {
            zoomer_->restart(widened);
        } else {
            zoomer_->restart(widened, zoomer_->zoomRect());
        }
        updateButtons();
        showYRange(widened);
    }
    loadView();
}

void PlotDialog::OnPrintClicked() {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
        printer_->setColorMode(QPrinter::Color);
        printer_->setPageOrientation(QPageLayout::Landscape);
        printer_->setPageSize(QPageSize(QPageSize::Letter));
        printDialog_ = new QPrintDialog(printer_.get(), this);
    }
    if (printDialog_->exec() == QDialog::Accepted) {
        tell(tr("Print"), printPicture(*plot_, *printer_));
    }
}

void PlotDialog::copyPicture() {
    constexpr double pixelRatio = 2; // sharp in documents
    QApplication::clipboard()->setImage(pictureOf(*plot_, plot_->size(), pixelRatio));
}

void PlotDialog::savePicture() {
    QString filter;
    QString path = QFileDialog::getSaveFileName(this, tr("Save picture"), {},
                                                tr("PNG (*.png);;SVG (*.svg);;PDF (*.pdf)"), &filter);
    if (path.isEmpty()) {
        return;
    }
    if (!isPictureName(path)) {
        path += QLatin1Char('.') + filter.left(3).toLower();
        if (QFileInfo::exists(path) && !mayReplace(path)) {
            return;
        }
    }
    if (isLoaded(path)) {
        tell(tr("Save picture"), path + QStringLiteral(": This file is loaded; it is left alone"));
        return;
    }
    const QString problem = writePicture(*plot_, path, plot_->size());
    tell(tr("Save picture"), problem.isEmpty() ? problem : path + QStringLiteral(": ") + problem);
}

// The key that closes the window also gives up a rectangle that is being drawn.
void PlotDialog::giveUpOrClose() {
    if (zoomer_->isActive()) {
        zoomer_->abandon();
    } else {
        close();
    }
}

// The file dialog has asked about the name as it was typed only.
bool PlotDialog::mayReplace(const QString &path) {
    return QMessageBox::question(this, tr("Save picture"),
                                 tr("%1 already exists. Do you want to replace it?").arg(path)) ==
           QMessageBox::Yes;
}

bool PlotDialog::isLoaded(const QString &path) const {
    const QString canonical = QFileInfo(path).canonicalFilePath(); // empty when there is no such file
    const std::set<std::string> files = dataSet_->fileNames();
    return !canonical.isEmpty() && std::any_of(files.begin(), files.end(), [&](const std::string &file) {
        return QFileInfo(QString::fromStdString(file)).canonicalFilePath() == canonical;
    });
}

void PlotDialog::tell(const QString &title, const QString &problem) {
    if (!problem.isEmpty()) {
        QMessageBox::warning(this, title, problem);
    }
}

// The right button goes back to the base on the canvas. There it has nothing to do, so that it shows the
// menu there, as it does everywhere else.
void PlotDialog::contextMenuEvent(QContextMenuEvent *event) {
    const QWidget *canvas = plot_->canvas();
    const bool isOnCanvas = canvas->rect().contains(canvas->mapFromGlobal(event->globalPos()));
    if (event->reason() == QContextMenuEvent::Mouse && isOnCanvas && !zoomer_->isAtBase()) {
        return;
    }
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->popup(event->globalPos());
}
