#include "plot/TimeSeriesPlot.h"

#include "data/Record.h"
#include "data/VariableKey.h"
#include "loading/QDataSet.h"
#include "plot/CurveColours.h"
#include "plot/GappedCurve.h"
#include "plot/TimeScaleDraw.h"
#include "plot/TimeScaleEngine.h"

#include <QPainter>
#include <qwt_legend.h>
#include <qwt_legend_label.h>
#include <qwt_plot_grid.h>

#include <algorithm>
#include <array>

namespace {

struct Extreme {
    const char *selector;
    const char *title;
};
constexpr std::array<Extreme, 2> extremes{{{"max", "MAX"}, {"min", "MIN"}}};

constexpr bool isVariableUnknown(const std::string &zone) {
    return zone.empty() || zone == "Unknown";
}

// The key that shows as `text`: a key whose bytes are not UTF-8 cannot be made from its text.
std::string keyOf(const QDataSet &dataSet, const QString &text) {
    std::string plain = text.toStdString();
    const std::set<std::string> keys = dataSet.variableKeys();
    if (keys.contains(plain)) {
        return plain;
    }
    const auto found = std::find_if(keys.begin(), keys.end(), [&text](const std::string &key) {
        return QString::fromStdString(key) == text;
    });
    return found == keys.end() ? plain : *found;
}

QwtPlotGrid *makeGrid() {
    auto *grid = new QwtPlotGrid;
    grid->enableXMin(true);
    grid->enableYMin(false);
    grid->setMajorPen(QPen(Qt::black, 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    grid->setMinorPen(QPen(Qt::gray, 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    return grid;
}

QRectF rectOf(const Extent &times, const Extent &values) {
    return {times.low, values.low, times.width(), values.width()};
}

} // namespace

TimeSeriesPlot::TimeSeriesPlot(const QDataSet &dataSet, const QString &key, QWidget *parent, Side side)
    : QwtPlot(parent),
      dataSet_(dataSet),
      timezone_(dataSet.timeZoneNameOfKey(keyOf(dataSet, key))),
      legend_(new QwtLegend) {
    setAutoReplot(false);
    setCanvasBackground(Qt::white);
    makeGrid()->attach(this);
    setUpAxis(keyOf(dataSet, key));
    legend_->setDefaultItemMode(QwtLegendData::Checkable);
    insertLegend(legend_, TopLegend, -1);
    addVariable(key, side);
}

TimeSeriesPlot::~TimeSeriesPlot() {
    // Curves show series, and both are to go while the plot is whole.
    detachItems(QwtPlotItem::Rtti_PlotItem, true);
}

void TimeSeriesPlot::setUpAxis(const std::string &key) {
    const std::string zone = dataSet_.timeZoneNameOfKey(key);
    const QString time = tr("Time");
    setAxisTitle(xBottom, isVariableUnknown(zone) ? time
                                                  : time + QStringLiteral(" (") +
                                                        QString::fromStdString(zone) + QLatin1Char(')'));
    setAxisScaleEngine(xBottom, new TimeScaleEngine(timezone_));
    restartLabels();
}

void TimeSeriesPlot::restartLabels() {
    setAxisScaleDraw(xBottom, new TimeScaleDraw(timezone_));
}

void TimeSeriesPlot::addVariable(const QString &key, Side side) {
    const std::string name = keyOf(dataSet_, key);
    removeVariable(name);
    std::vector<SeriesRequest> requests{{name, ""}};
    for (const Extreme &extreme : extremes) {
        requests.push_back({name, extreme.selector});
    }
    std::vector<SeriesPoints> points =
        dataSet_.seriesOf(requests, wholeRangeStart, wholeRangeEnd, ShortBlocks::atAFinerLevel);
    const auto series = [&](std::size_t index) {
        return std::make_unique<PlotSeries>(dataSet_, requests[index], std::move(points[index]));
    };
    const QColor colour = curveColour(addedVariables_++);
    addCurve(series(0), key, QPen(colour, 0), side);
    for (std::size_t i = 0; i < extremes.size(); ++i) {
        addCurve(series(i + 1), QString::fromLatin1(extremes[i].title),
                 QPen(colour, 1, Qt::DashLine, Qt::RoundCap, Qt::RoundJoin), side);
    }
}

void TimeSeriesPlot::addCurve(std::unique_ptr<PlotSeries> series, const QString &title, const QPen &pen,
                              Side side) {
    QwtText text(title, QwtText::PlainText);
    text.setColor(pen.color());
    auto *curve = new GappedCurve(text, *series);
    curve->setPen(pen);
    if (side == Side::right) {
        curve->setYAxis(yRight);
        enableAxis(yRight);
    }
    curve->attach(this);
    updateLegend();
    setLegendChecked(*curve, true);
    EntryKey key{series->request().key, series->request().selector};
    entries_.emplace(std::move(key), Entry{std::move(series), curve});
}

void TimeSeriesPlot::removeVariable(const std::string &key) {
    const auto isOfVariable = [&key](const auto &entry) { return entry.first.first == key; };
    for (auto found = entries_.begin();
         (found = std::find_if(found, entries_.end(), isOfVariable)) != entries_.end();) {
        delete found->second.curve;
        found = entries_.erase(found);
    }
    const bool isRightUsed = std::any_of(entries_.begin(), entries_.end(), [](const auto &entry) {
        return entry.second.curve->yAxis() == yRight;
    });
    enableAxis(yRight, isRightUsed);
}

void TimeSeriesPlot::loadEverything() {
    ::loadEverything(dataSet_, allSeries());
}

void TimeSeriesPlot::loadWindow(double from, double to) {
    ::loadWindow(dataSet_, allSeries(), from, to);
}

std::vector<PlotSeries *> TimeSeriesPlot::allSeries() const {
    std::vector<PlotSeries *> all;
    all.reserve(entries_.size());
    for (const auto &[key, entry] : entries_) {
        all.push_back(entry.series.get());
    }
    return all;
}

Extent TimeSeriesPlot::windows(Curves which) const {
    Extent windows;
    for (const auto &[key, entry] : entries_) {
        const bool counts = which == Curves::all || entry.curve->isVisible();
        if (counts && entry.series->size() > 0 && !entry.series->wholeRange().isEmpty()) {
            windows.include(entry.series->window());
        }
    }
    return windows;
}

Extent TimeSeriesPlot::wholeRange() const {
    Extent range;
    for (const auto &[key, entry] : entries_) {
        range.include(entry.series->wholeRange());
    }
    return range;
}

Extent TimeSeriesPlot::loadedRange(Curves which) const {
    Extent range;
    for (const auto &[key, entry] : entries_) {
        if (which == Curves::all || entry.curve->isVisible()) {
            range.include(entry.series->loadedRange());
        }
    }
    return range;
}

QRectF TimeSeriesPlot::wholeRect() const {
    Extent times = windows(Curves::all);
    Extent values = wholeRange();
    if (times.isEmpty()) {
        times = timesOfData();
    }
    times = times.isEmpty() ? Extent{0, 1} : times;
    values = values.isEmpty() ? Extent{0, 1} : values;
    return rectOf(times, values);
}

// Where to look when there is no point that can be drawn: at those that cannot, else at the records of the
// variables' instruments, which may be too few for a single average.
Extent TimeSeriesPlot::timesOfData() const {
    Extent ofPoints;
    Extent ofRecords;
    for (const auto &[key, entry] : entries_) {
        if (entry.series->size() > 0) {
            ofPoints.include(entry.series->window());
        }
        const auto parts = splitVariableKey(key.first);
        if (parts && !entry.series->wholeRange().isEmpty()) {
            dataSet_.timeRangeOfInstrument(std::string(parts->instrument), ofRecords.low, ofRecords.high);
        }
    }
    return ofPoints.isEmpty() ? ofRecords : ofPoints;
}

QRectF TimeSeriesPlot::widened(const QRectF &rect) const {
    Extent times{rect.left(), rect.right()};
    Extent values{rect.top(), rect.bottom()};
    times.include(windows(Curves::all));
    values.include(wholeRange());
    return rectOf(times, values);
}

bool TimeSeriesPlot::hasNothingToDraw() const {
    return std::none_of(entries_.begin(), entries_.end(), [](const auto &entry) {
        const std::vector<double> &values = entry.second.series->values();
        return entry.second.curve->isVisible() && std::any_of(values.begin(), values.end(), isDrawable);
    });
}

// What pictures are made with does not come by here.
void TimeSeriesPlot::drawCanvas(QPainter *painter) {
    QwtPlot::drawCanvas(painter);
    if (emptyHint_.isEmpty() || !hasNothingToDraw()) {
        return;
    }
    constexpr int margin = 12;
    painter->setPen(palette().color(QPalette::PlaceholderText));
    painter->setFont(font());
    painter->drawText(canvas()->contentsRect().adjusted(margin, margin, -margin, -margin),
                      Qt::AlignCenter | Qt::TextWordWrap, emptyHint_);
}

bool TimeSeriesPlot::isEveryCurveHidden() const {
    return std::none_of(entries_.begin(), entries_.end(),
                        [](const auto &entry) { return entry.second.curve->isVisible(); });
}

void TimeSeriesPlot::setLegendChecked(QwtPlotItem &curve, bool checked) {
    const QVariant info = itemToInfo(&curve);
    if (auto *label = qobject_cast<QwtLegendLabel *>(legend_->legendWidget(info))) {
        label->setChecked(checked);
    }
}

QRectF withTimes(const QRectF &rect, const Extent &times) {
    return {times.low, rect.top(), times.width(), rect.height()};
}

QRectF withValues(const QRectF &rect, const Extent &values) {
    return {rect.left(), values.low, rect.width(), values.width()};
}

QRectF withArea(const QRectF &rect) {
    constexpr double halfSecond = 0.5;
    QRectF wide = rect;
    if (!(wide.width() > 0)) {
        wide = withTimes(wide, {rect.left() - halfSecond, rect.left() + halfSecond});
    }
    if (!(wide.height() > 0)) {
        const double half = rect.top() == 0 ? 0.5 : std::abs(rect.top()) / 2;
        wide = withValues(wide, {rect.top() - half, rect.top() + half});
    }
    return wide;
}
