#include "plot/PlotDialog.h"

#include "plot/PlotAccessibility.h"
#include "plot/PlotMenu.h"
#include "plot/PlotZoomer.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <qwt_legend.h>
#include <qwt_plot_canvas.h>

namespace {

// Text files may be dropped, too; no variable has a longer name.
constexpr int longestKey = 4096;

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

} // namespace

PlotDialog::PlotDialog(QWidget *parent, const QDataSet *dataSet, const QString &key)
    : QDialog(parent),
      plot_(new TimeSeriesPlot(*dataSet, key, this)),
      zoomer_(new PlotZoomer(plot_->canvas(), plot_->timezone())),
      view_(*plot_, *zoomer_, controls_.yRange),
      output_(*this, *plot_, *dataSet) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setMinimumSize(150, 150);
    resize(700, 350);
    setWindowTitle(tr("File Viewer"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);

    adaptToDesktop(*plot_, palette());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plot_, 1);
    layout->addLayout(controls_.row);
    makeActions();
    connectAll();
    describeForScreenReaders(*plot_);
    qobject_cast<QwtPlotCanvas *>(plot_->canvas())->setFocusIndicator(QwtPlotCanvas::CanvasFocusIndicator);

    view_.start();
    plot_->setFocus();
}

PlotDialog::~PlotDialog() = default;

// What the context menu offers, by the keys that people try.
void PlotDialog::makeActions() {
    const auto addZoom = [this](QToolButton *button, const QList<QKeySequence> &keys, const char *slot) {
        zoomControls_.append({button, addMenuAction(*this, *button, keys, slot)});
    };
    addMenuAction(*this, tr("Copy picture"), {QKeySequence::Copy}, SLOT(copyPicture()));
    addMenuAction(*this, tr("Save picture..."), {QKeySequence::Save}, SLOT(savePicture()));
    addMenuAction(*this, tr("Print..."), {QKeySequence::Print}, SLOT(OnPrintClicked()));
    addMenuSeparator(*this);
    addZoom(controls_.previous, {QStringLiteral("Alt+Left"), QStringLiteral("-")}, SLOT(OnZoomLeft()));
    addZoom(controls_.next, {QStringLiteral("Alt+Right"), QStringLiteral("+")}, SLOT(OnZoomRight()));
    addZoom(controls_.full, {}, SLOT(OnAutoScaleFull()));
    addZoom(controls_.horizontal, {}, SLOT(OnAutoScaleHorizontal()));
    addZoom(controls_.vertical, {}, SLOT(OnAutoScaleVertical()));
    addMenuSeparator(*this);
    addMenuAction(*this, tr("Close"), {Qt::Key_Escape}, SLOT(giveUpOrClose()));
    connect(new QShortcut(QStringLiteral("Ctrl+W"), this), SIGNAL(activated()), SLOT(close()));
}

void PlotDialog::connectAll() {
    connect(zoomer_, SIGNAL(zoomed(QRectF)), SLOT(OnZoomed(QRectF)));
    connect(controls_.previous, SIGNAL(clicked(bool)), SLOT(OnZoomLeft()));
    connect(controls_.next, SIGNAL(clicked(bool)), SLOT(OnZoomRight()));
    connect(controls_.full, SIGNAL(clicked(bool)), SLOT(OnAutoScaleFull()));
    connect(controls_.vertical, SIGNAL(clicked(bool)), SLOT(OnAutoScaleVertical()));
    connect(controls_.horizontal, SIGNAL(clicked(bool)), SLOT(OnAutoScaleHorizontal()));
    connect(controls_.close, SIGNAL(clicked(bool)), SLOT(close()));
    connect(controls_.print, SIGNAL(clicked(bool)), SLOT(OnPrintClicked()));
    connect(&plot_->checkableLegend(), SIGNAL(checked(QVariant, bool, int)),
            SLOT(OnLegendChecked(QVariant, bool, int)));
    connect(controls_.applyYRange, SIGNAL(clicked(bool)), SLOT(OnYMinMaxApplyClicked()));
    for (const QLineEdit *edit : {controls_.yRange.minimum(), controls_.yRange.maximum()}) {
        connect(edit, SIGNAL(editingFinished()), SLOT(OnYMinMaxEditChanged()));
    }
}

void PlotDialog::OnZoomed(const QRectF &rect) {
    updateButtons();
    view_.showZoomed(rect);
}

void PlotDialog::updateButtons() {
    for (const auto &[button, action] : zoomControls_) {
        const bool isUsable = button == controls_.next ? view_.hasNext() : view_.hasPrevious();
        button->setEnabled(isUsable);
        action->setEnabled(isUsable);
    }
}

void PlotDialog::OnZoomLeft() {
    view_.goBack();
}

void PlotDialog::OnZoomRight() {
    view_.goOn();
}

void PlotDialog::OnAutoScaleFull() {
    view_.scaleFully();
}

void PlotDialog::OnAutoScaleHorizontal() {
    view_.scaleHorizontally();
}

void PlotDialog::OnAutoScaleVertical() {
    view_.scaleVertically();
}

void PlotDialog::OnLegendChecked(const QVariant &info, bool on, int) {
    QwtPlotItem *item = plot_->infoToItem(info);
    if (item != nullptr && item->rtti() == QwtPlotItem::Rtti_PlotCurve) {
        view_.setCurveVisible(*item, on);
    }
}

void PlotDialog::OnYMinMaxEditChanged() {
    controls_.yRange.noteEdit();
}

void PlotDialog::OnYMinMaxApplyClicked() {
    if (const auto range = controls_.yRange.range()) {
        view_.showValues(*range);
    }
}

void PlotDialog::OnPrintClicked() {
    output_.print();
}

void PlotDialog::copyPicture() {
    output_.copyPicture();
}

void PlotDialog::savePicture() {
    output_.savePicture();
}

// The key that closes the window also gives up a rectangle that is being drawn.
void PlotDialog::giveUpOrClose() {
    if (zoomer_->isActive()) {
        zoomer_->abandon();
    } else {
        close();
    }
}

void PlotDialog::addVariable(const QString &key, TimeSeriesPlot::Side side) {
    view_.addVariable(key, side);
    describeForScreenReaders(*plot_);
    updateButtons();
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

// The right button goes back to the base on the canvas. There it has nothing to do, so that it shows the
// menu there, as it does everywhere else.
void PlotDialog::contextMenuEvent(QContextMenuEvent *event) {
    const QWidget *canvas = plot_->canvas();
    const bool isOnCanvas = canvas->rect().contains(canvas->mapFromGlobal(event->globalPos()));
    if (event->reason() == QContextMenuEvent::Mouse && isOnCanvas && !zoomer_->isAtBase()) {
        return;
    }
    openMenu(*this, event->globalPos());
}
