#include "plot/PlotPicture.h"

#include "plot/QwtCurve.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <qwt_plot.h>
#include <qwt_plot_renderer.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr int pixelsPerInch = 96;

// While this lives, the plot looks as it should on paper. A desktop's colours are not those of paper: its
// texts may be white. And a line as thin as the device can draw is hardly seen where that is very thin.
class PaperLook {
public:
    explicit PaperLook(QwtPlot &plot) : plot_(plot), palette_(plot.palette()) {
        QPalette paper(Qt::white);
        paper.setColor(QPalette::WindowText, Qt::black);
        paper.setColor(QPalette::Text, Qt::black);
        plot_.setPalette(paper);
        for (QwtPlotItem *item : plot_.itemList(QwtPlotItem::Rtti_PlotCurve)) {
            auto *curve = static_cast<QwtPlotCurve *>(item);
            pens_.emplace_back(curve, curve->pen());
            QPen pen = curve->pen();
            pen.setWidthF(std::max(pen.widthF(), 1.0));
            curve->setPen(pen);
        }
    }
    ~PaperLook() {
        for (const auto &[curve, pen] : pens_) {
            curve->setPen(pen);
        }
        plot_.setPalette(palette_);
    }
    PaperLook(const PaperLook &) = delete;
    PaperLook &operator=(const PaperLook &) = delete;

private:
    QwtPlot &plot_;
    QPalette palette_;
    std::vector<std::pair<QwtPlotCurve *, QPen>> pens_;
};

QwtPlotRenderer &withoutBackground(QwtPlotRenderer &renderer) {
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    return renderer;
}

// `scale` is the device's pixels for one of the picture's.
void drawOn(QPaintDevice &device, QwtPlot &plot, const QRectF &rect, double scale = 1) {
    constexpr double margin = 6;
    const PaperLook look(plot);
    QwtPlotRenderer renderer;
    QPainter painter(&device);
    painter.fillRect(rect, Qt::white);
    withoutBackground(renderer).render(
        &plot, &painter, rect.marginsRemoved(QMarginsF(margin, margin, margin, margin) * scale));
}

bool writePng(QIODevice &to, QwtPlot &plot, const QSize &size) {
    return pictureOf(plot, size).save(&to, "PNG");
}

bool writeSvg(QIODevice &to, QwtPlot &plot, const QSize &size) {
    QSvgGenerator svg;
    svg.setOutputDevice(&to);
    svg.setResolution(plot.logicalDpiX());
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(), size));
    svg.setTitle(plot.axisTitle(QwtPlot::xBottom).text());
    drawOn(svg, plot, QRectF(QPointF(), size));
    return true;
}

bool writePdf(QIODevice &to, QwtPlot &plot, const QSize &size) {
    constexpr double pointsPerInch = 72;
    QPdfWriter pdf(&to);
    pdf.setCreator(QStringLiteral("fvqa300 " FVQA_VERSION));
    pdf.setResolution(pixelsPerInch); // finer, and dotted lines would look drawn through
    pdf.setPageSize(
        QPageSize(QSizeF(size) * pointsPerInch / pixelsPerInch, QPageSize::Point, {}, QPageSize::ExactMatch));
    pdf.setPageMargins(QMarginsF());
    drawOn(pdf, plot, QRectF(QPointF(), size));
    return true;
}

struct Format {
    const char *ending;
    bool (*write)(QIODevice &to, QwtPlot &plot, const QSize &size);
};
constexpr Format formats[] = {{"png", writePng}, {"svg", writeSvg}, {"pdf", writePdf}};

const Format *formatOf(const QString &path) {
    const QString ending = QFileInfo(path).suffix();
    for (const Format &format : formats) {
        if (ending.compare(QLatin1String(format.ending), Qt::CaseInsensitive) == 0) {
            return &format;
        }
    }
    return nullptr;
}

} // namespace

QImage pictureOf(QwtPlot &plot, const QSize &size, double pixelRatio) {
    constexpr double inchesPerMeter = 1 / 0.0254;
    QImage image((QSizeF(size) * pixelRatio).toSize(), QImage::Format_RGB32);
    if (image.isNull()) {
        return image;
    }
    const int dots = static_cast<int>(std::lround(plot.logicalDpiX() * pixelRatio * inchesPerMeter));
    image.setDotsPerMeterX(dots);
    image.setDotsPerMeterY(dots);
    drawOn(image, plot, QRectF(image.rect()), pixelRatio);
    return image;
}

bool isPictureName(const QString &path) {
    return formatOf(path) != nullptr;
}

QString writePicture(QwtPlot &plot, const QString &path, const QSize &size) {
    const Format *format = formatOf(path);
    if (format == nullptr) {
        return QStringLiteral("The name must end in .png, .svg or .pdf");
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !format->write(buffer, plot, size)) {
        return QStringLiteral("The picture cannot be made: it may be too large");
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true); // a folder that takes no new files may hold one to write to
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return file.errorString();
    }
    return {};
}

QString printPicture(QwtPlot &plot, QPrinter &printer) {
    const PaperLook look(plot);
    QwtPlotRenderer renderer;
    withoutBackground(renderer).renderTo(&plot, printer);
    return printer.printerState() == QPrinter::Error ? QStringLiteral("The printer does not take the page")
                                                     : QString();
}
