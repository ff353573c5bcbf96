#include "ui/WindowWalk.h"

#include "data/DataFragment.h"
#include "loading/QDataSet.h"
#include "plot/PlotZoomer.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FileItemModel.h"
#include "ui/FileItemView.h"
#include "ui/ModalDialogs.h"
#include "ui/SummaryTableWidget.h"
#include "ui/WalkProblems.h"

#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QThread>
#include <QToolButton>
#include <QtTest>

#include <algorithm>
#include <array>

namespace {

qint64 recordsOf(const QDataSet &dataSet, const std::string &group) {
    const auto colon = group.find(':');
    qint64 records = 0;
    for (const auto &fragment : dataSet.fragmentsOf(group.substr(0, colon), group.substr(colon + 1))) {
        records += fragment->recordCount();
    }
    return records;
}

} // namespace

WindowWalk::WindowWalk(const WalkFiles &files, quint64 seed) : files_(files), random_(seed) {
    const char *const arguments[] = {"/nowhere/viewer"};
    window_ = std::make_unique<MyMainWindow>("Viewer", "/nowhere/viewer", 1, arguments);
    frame_ = window_->findChild<MyFrame *>();
    model_ = window_->findChild<FileItemModel *>();
    dataSet_ = model_->dataSet();
    connect(model_, &FileItemModel::FileLoaded, this, [this](const QString &path) { loaded_.insert(path); });
    connect(model_, &FileItemModel::FileRemoved, this, [this](const QString &path) { loaded_.erase(path); });
    window_->show();
}

WindowWalk::~WindowWalk() {
    window_->close();
}

QString WindowWalk::act() {
    static constexpr std::array<std::pair<const char *, void (WindowWalk::*)()>, 13> actions{{
        {"add", &WindowWalk::addSome},
        {"add", &WindowWalk::addSome},
        {"wait", &WindowWalk::waitForOneFile},
        {"wait", &WindowWalk::waitForOneFile},
        {"remove", &WindowWalk::removeSome},
        {"add again", &WindowWalk::addAgain},
        {"plot", &WindowWalk::plotSome},
        {"plot", &WindowWalk::plotSome},
        {"drop", &WindowWalk::dropOnPlot},
        {"zoom", &WindowWalk::zoomSomePlot},
        {"zoom", &WindowWalk::zoomSomePlot},
        {"close a plot", &WindowWalk::closeSomePlot},
        {"export", &WindowWalk::exportSome},
    }};
    const auto &[name, action] = random_.pick(actions);
    (this->*action)();
    mostWorkers_ = std::max(mostWorkers_, static_cast<int>(dataSet_->findChildren<QThread *>().size()));
    // Workers get on between some actions and not between others.
    for (auto rounds = random_.below(4); rounds > 0; --rounds) {
        QCoreApplication::processEvents();
    }
    return name;
}

void WindowWalk::addSome() {
    QStringList paths;
    // At times all, so that every worker is busy and some files wait.
    const bool all = random_.oneIn(3);
    for (const QString &path : files_.paths()) {
        if (all || random_.oneIn(3)) {
            paths += path;
        }
    }
    if (random_.oneIn(4)) {
        paths += files_.missing();
    }
    for (const QString &path : std::as_const(paths)) {
        if (!rows_.contains(path)) {
            rows_ += path;
        }
    }
    frame_->AddFiles(paths);
}

void WindowWalk::waitForOneFile() {
    bool came = isIdle();
    const auto connection =
        connect(model_, &FileItemModel::FileLoaded, this, [&came](const QString &) { came = true; });
    // A worker that was told to stop ends without a word.
    while (!came && !isIdle()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    disconnect(connection);
}

void WindowWalk::removeRows(const std::set<int> &rows) {
    auto *view = window_->findChild<FileItemView *>();
    view->selectionModel()->clear();
    for (const int row : rows) {
        view->selectionModel()->select(model_->index(row), QItemSelectionModel::Select);
    }
    // NOLINTNEXTLINE(modernize-loop-convert): backwards
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        rows_.removeAt(*row);
    }
    for (auto *button : frame_->findChildren<QToolButton *>()) {
        if (button->toolTip() == "Remove a file") {
            button->click();
        }
    }
}

void WindowWalk::removeSome() {
    std::set<int> rows;
    for (int row = 0; row < rows_.size(); ++row) {
        if (random_.oneIn(3)) {
            rows.insert(row);
        }
    }
    removeRows(rows);
}

// In one go, so that the first worker of the file is still there.
void WindowWalk::addAgain() {
    if (rows_.isEmpty()) {
        return;
    }
    const int row = static_cast<int>(random_.below(static_cast<std::uint64_t>(rows_.size())));
    const QString path = rows_[row];
    removeRows({row});
    rows_ += path;
    frame_->AddFiles({path});
}

void WindowWalk::plotSome() {
    auto *table = window_->findChild<SummaryTableWidget *>();
    const std::set<std::string> keys = keysOf(*table);
    if (keys.empty() || plots_.count() - plots_.count(nullptr) >= 6) {
        return;
    }
    const QString key = QString::fromStdString(random_.pick(keys));
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column) {
            const auto *item = table->item(row, column);
            if (item == nullptr || item->data(Qt::UserRole).toString() != key) {
                continue;
            }
            table->scrollToItem(item);
            const QPoint at = table->visualItemRect(item).center();
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, at);
        }
    }
    for (PlotDialog *plot : window_->findChildren<PlotDialog *>()) {
        if (!plots_.contains(plot)) {
            plots_ += plot;
        }
    }
}

PlotDialog *WindowWalk::somePlot() {
    std::vector<PlotDialog *> open;
    for (const QPointer<PlotDialog> &plot : std::as_const(plots_)) {
        if (plot && plot->isVisible()) {
            open.push_back(plot);
        }
    }
    return open.empty() ? nullptr : random_.pick(open);
}

void WindowWalk::dropOnPlot() {
    const std::set<std::string> keys = dataSet_->variableKeys();
    PlotDialog *plot = somePlot();
    if (plot == nullptr || keys.empty()) {
        return;
    }
    QMimeData data;
    data.setText(QString::fromStdString(random_.pick(keys)));
    const QPoint at(random_.oneIn(2) ? 5 : plot->width() - 5, plot->height() / 2);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(plot, &enter);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(plot, &drop);
}

void WindowWalk::zoomSomePlot() {
    PlotDialog *plot = somePlot();
    if (plot == nullptr) {
        return;
    }
    switch (random_.below(5)) {
    case 0:
        plot->OnZoomLeft();
        break;
    case 1:
        plot->OnAutoScaleFull();
        break;
    case 2:
        plot->OnAutoScaleHorizontal();
        break;
    default: {
        auto *zoomer = plot->findChild<PlotZoomer *>();
        const QRectF view = zoomer->zoomRect();
        const double part = static_cast<double>(1 + random_.below(80)) / 100;
        zoomer->zoom(QRectF(view.left() + view.width() * part / 5, view.top(),
                            std::max(view.width() * part, 0.1), std::max(view.height(), 1e-6)));
    }
    }
}

void WindowWalk::closeSomePlot() {
    if (PlotDialog *plot = somePlot()) {
        plot->close();
    }
}

void WindowWalk::exportSome() {
    if (!dataSet_->hasVariableKeys()) {
        return;
    }
    constexpr std::array endings{Ending::finish, Ending::finish,      Ending::reject,
                                 Ending::cancel, Ending::removeFiles, Ending::close};
    const Ending ending = random_.oneIn(3) ? Ending::finish : random_.pick(endings);
    const QString target = files_.target(++exports_);
    QFile::remove(target);
    std::set<qint64> records;
    std::string group;
    const auto isRunning = [this] { return frame_->findChild<ExportProgressDialog *>() != nullptr; };
    QObject context;
    // A file may come before the export has taken up its blocks.
    connect(model_, &FileItemModel::FileLoaded, &context, [&] {
        if (!group.empty() && !isRunning()) {
            records.insert(recordsOf(*dataSet_, group));
        }
    });
    onNextDialog(&context, [&](QDialog *shown) {
        auto *dialog = qobject_cast<ExportWhatDialog *>(shown);
        dialog->findChildren<QComboBox *>()[0]->setCurrentIndex(1); // text
        dialog->findChildren<QComboBox *>()[1]->setCurrentIndex(0); // one file
        dialog->findChild<QLineEdit *>()->setText(target);
        group = dialog->results().selectedItem;
        records.insert(recordsOf(*dataSet_, group));
        ending == Ending::reject ? dialog->reject() : dialog->accept();
    });
    QTimer disturbance;
    connect(&disturbance, &QTimer::timeout, this, [&] {
        if (isRunning()) {
            disturbance.stop();
            disturb(ending);
        }
    });
    disturbance.start(0);
    frame_->OnExportFile();
    if (group.empty()) {
        exportProblem_ = "no export dialog came";
        return;
    }
    const bool mayBeCut = ending == Ending::cancel || ending == Ending::close;
    const ExportEnd end = ending == Ending::reject ? ExportEnd::rejected
                          : mayBeCut               ? ExportEnd::cut
                                                   : ExportEnd::whole;
    const QString found = exportProblem(target, end, records);
    exportProblem_ = found.isEmpty() ? exportProblem_ : found;
    QFile::remove(target);
}

void WindowWalk::disturb(Ending ending) {
    switch (ending) {
    case Ending::cancel:
        frame_->findChild<ExportProgressDialog *>()->cancel();
        break;
    case Ending::removeFiles:
        removeSome();
        break;
    case Ending::close:
        window_->close();
        isClosed_ = true;
        break;
    default:
        break;
    }
}

QString WindowWalk::problem() const {
    for (const QString &found : {exportProblem_, rowProblem(*model_, rows_),
                                 dataProblem(*dataSet_, files_, loaded_), plotProblem(*window_, plots_)}) {
        if (!found.isEmpty()) {
            return found;
        }
    }
    return "";
}

bool WindowWalk::isIdle() const {
    return dataSet_->findChildren<QThread *>().isEmpty();
}

QString WindowWalk::idleProblem() const {
    for (const QString &found : {loadProblem(rows_, files_, loaded_), progressProblem(*window_),
                                 tableProblem(*window_, *dataSet_)}) {
        if (!found.isEmpty()) {
            return found;
        }
    }
    return "";
}
