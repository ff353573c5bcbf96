#include "ui/MyFrame.h"

#include "data/VariableKey.h"
#include "export/ExportChoices.h"
#include "export/ExportJob.h"
#include "loading/QDataSet.h"
#include "ui/AboutWidget.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FileIcons.h"
#include "ui/FileItemModel.h"
#include "ui/FileItemView.h"
#include "ui/FileWidget.h"
#include "ui/HelpDocument.h"
#include "ui/WindowKeys.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMimeData>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <iostream>

namespace {

QToolButton *makeToolButton(const QString &text, const QIcon &icon) {
    auto *button = new QToolButton;
    button->setAutoRaise(true);
    button->setToolTip(text);
    button->setAccessibleName(text);
    button->setIconSize({22, 22});
    button->setIcon(icon);
    return button;
}

} // namespace

MyFrame::MyFrame(const QString &displayName, const QString &applicationPath, QWidget *window)
    : QFrame(window),
      helpPath_(helpDocumentPath(applicationPath)),
      view_(new FileItemView),
      model_(new FileItemModel(this)),
      pages_(new QStackedWidget),
      fileWidget_(new FileWidget(nullptr, model_->dataSet())),
      aboutWidget_(new AboutWidget),
      addButton_(makeToolButton(tr("Add a file"), addFileIcon())),
      removeButton_(makeToolButton(tr("Remove a file"), removeFileIcon())),
      exportButton_(new QPushButton(tr("Export..."))),
      helpButton_(new QPushButton(tr("Help..."))),
      closeButton_(new QPushButton(tr("Close"))),
      standardError_(std::cerr, &messages_) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setAccessibleName(displayName);

    view_->setModel(model_);
    view_->setMinimumWidth(200);
    pages_->setMinimumSize(480, 360);
    pages_->addWidget(aboutWidget_);
    pages_->addWidget(fileWidget_);

    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(view_);
    splitter->addWidget(pages_);
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    layout->addLayout(makeButtonRow());

    connectAll();
    addKeysOfFrame(*this, *view_);
    describeControls();
    updateExportButton();
}

QHBoxLayout *MyFrame::makeButtonRow() {
    auto *row = new QHBoxLayout;
    row->addWidget(addButton_);
    row->addWidget(removeButton_);
    row->addStretch();
    row->addWidget(exportButton_);
    row->addWidget(helpButton_);
    row->addWidget(closeButton_);
    return row;
}

void MyFrame::connectAll() {
    connect(addButton_, SIGNAL(clicked(bool)), SLOT(OnOpenFile()));
    connect(removeButton_, SIGNAL(clicked(bool)), SLOT(OnCloseFile()));
    if (parentWidget() != nullptr) {
        connect(closeButton_, SIGNAL(clicked(bool)), parentWidget(), SLOT(close()));
    }
    connect(exportButton_, SIGNAL(clicked(bool)), SLOT(OnExportFile()));
    connect(helpButton_, SIGNAL(clicked(bool)), SLOT(OnHelp()));
    connect(aboutWidget_, SIGNAL(OpenFile()), SLOT(OnOpenFile()));
    connect(view_, SIGNAL(SelectionChanged(QModelIndex, QModelIndex)),
            SLOT(OnSelectionChanged(QModelIndex, QModelIndex)));
    connect(&messages_, SIGNAL(Message(const char *)), fileWidget_, SLOT(OnMessage(const char *)));
    connect(model_, &FileItemModel::rowsInserted, this, [this] { protectedFiles_.reset(); });
    connect(model_, SIGNAL(FileLoaded(QString)), SLOT(OnFileLoaded(QString)));
    connect(model_, SIGNAL(FileRemoved(QString)), SLOT(OnFileRemoved(QString)));
    connect(model_, SIGNAL(PostHandleFileRemoved(QString)), SLOT(OnPostFileRemoved(QString)));
}

void MyFrame::describeControls() {
    view_->setAccessibleName(tr("Files"));
    view_->setAccessibleDescription(tr("The files that are open. Delete removes those that are selected."));
    addButton_->setAccessibleDescription(tr("Asks for files and opens them, as Ctrl+O does"));
    removeButton_->setAccessibleDescription(tr("Closes the files that are selected in the list"));
    exportButton_->setAccessibleDescription(
        tr("Writes what the files hold to a file of another kind, as Ctrl+E does"));
    helpButton_->setAccessibleDescription(tr("Opens the manual, as F1 does"));
    closeButton_->setAccessibleDescription(tr("Closes the program, as Ctrl+Q does"));
}

void MyFrame::AddFiles(const QStringList &paths) {
    if (paths.isEmpty()) {
        return;
    }
    model_->AddFiles(paths);
    pages_->setCurrentWidget(fileWidget_);
}

void MyFrame::OnOpenFile() {
    QFileDialog dialog(this);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setViewMode(QFileDialog::Detail);
    if (dialog.exec() == QDialog::Accepted) {
        AddFiles(dialog.selectedFiles());
    }
}

void MyFrame::OnCloseFile() {
    const std::vector<int> rows = view_->selectedRowsFromBottom();
    // Else each removal of the current row would have the view look for the next one and lay itself out.
    if (!rows.empty()) {
        view_->selectionModel()->clear();
    }
    for (const int row : rows) {
        model_->RemoveFile(model_->index(row));
    }
    if (!rows.empty()) {
        // The keyboard goes on from where the rows were.
        const int next = std::min(rows.back(), model_->rowCount() - 1);
        view_->selectionModel()->setCurrentIndex(model_->index(next), QItemSelectionModel::NoUpdate);
    }
    updateExportButton();
}

void MyFrame::OnExportFile() {
    const std::set<std::string> groups = exportableGroups();
    if (groups.empty() || isExporting_) {
        return;
    }
    if (exportDialog_ == nullptr) {
        exportDialog_ = new ExportWhatDialog(this, timeColumns_);
    }
    exportDialog_->fillList(groups);
    if (exportDialog_->exec() != QDialog::Accepted) {
        return;
    }
    const ExportWhatDialog::Results results = exportDialog_->results();
    timeColumns_ = results.timeColumns;
    if (!results.targetName.empty() && !results.selectedItem.empty()) {
        exportData(results.fileType, results.selectedItem, results.targetName, results.splitPeriod);
    }
}

// Instrument ":" tag, of every variable that has both.
std::set<std::string> MyFrame::exportableGroups() const {
    std::set<std::string> groups;
    for (const std::string &text : model_->dataSet()->variableKeys()) {
        if (const auto key = splitVariableKey(text)) {
            groups.insert(std::string(key->instrument) + ':' + std::string(key->tag));
        }
    }
    return groups;
}

// Also the files that are still being loaded.
FileNames MyFrame::protectedFiles() {
    if (!protectedFiles_) {
        std::set<std::string> files = model_->dataSet()->fileNames();
        for (const QString &path : model_->paths()) {
            files.insert(path.toStdString());
        }
        protectedFiles_ = std::make_shared<const std::set<std::string>>(std::move(files));
    }
    return protectedFiles_;
}

void MyFrame::exportData(int fileType, const std::string &item, const std::string &targetName,
                         std::int32_t splitPeriod) {
    const auto colon = item.find(':');
    const std::string instrument = item.substr(0, colon);
    ExportSource source = exportSourceOf(*model_->dataSet(), instrument, item.substr(colon + 1));
    if (source.fragments.empty()) {
        std::cerr << item + ": No file holds this data\n";
        return;
    }
    source.loadedFiles = [this] { return protectedFiles(); };
    isExporting_ = true; // already now: the progress dialog processes events while it is made
    try {
        ExportProgressDialog progress(this, *model_->dataSet(), instrument);
        exportProgress_ = &progress;
        if (!closeAfterExport_) {
            runExport(source, {exportFormatOf(fileType), targetName, timeColumns_, splitPeriod}, progress);
        }
    } catch (const std::exception &error) {
        // Out of memory, most likely: the program goes on with what it has.
        std::cerr << targetName + ": The export failed: " + error.what() + '\n';
    }
    isExporting_ = false;
    if (closeAfterExport_) {
        closeAfterExport_ = false;
        QMetaObject::invokeMethod(window(), "close", Qt::QueuedConnection);
    }
}

bool MyFrame::endExport() {
    if (!isExporting_) {
        return true;
    }
    closeAfterExport_ = true;
    if (exportProgress_) {
        exportProgress_->cancel();
    }
    return false;
}

void MyFrame::closeEvent(QCloseEvent *event) {
    event->setAccepted(endExport());
}

void MyFrame::OnHelp() {
    // A missing document has no canonical path, and then nothing opens.
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(helpPath_).canonicalFilePath()));
}

// Nothing to do: the pages show all files at once.
void MyFrame::OnSelectionChanged(const QModelIndex &, const QModelIndex &) {}

void MyFrame::OnFileLoaded(const QString &) {
    protectedFiles_.reset();
    updateExportButton();
}

void MyFrame::OnFileRemoved(const QString &) {
    updateExportButton();
}

// Nothing to do: the pages stay, also without files.
void MyFrame::OnPostFileRemoved(const QString &) {}

void MyFrame::dragEnterEvent(QDragEnterEvent *event) {
    if (event->mimeData()->hasUrls()) {
        event->accept();
    }
}

void MyFrame::dropEvent(QDropEvent *event) {
    // Taking a moved file would let its source delete it.
    if (event->dropAction() != Qt::CopyAction) {
        event->ignore();
        return;
    }
    QStringList paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (const QString path = url.toLocalFile(); !path.isEmpty()) {
            paths += path;
        }
    }
    event->setAccepted(!paths.isEmpty());
    AddFiles(paths);
}

void MyFrame::updateExportButton() {
    exportButton_->setEnabled(model_->dataSet()->hasVariableKeys());
}
