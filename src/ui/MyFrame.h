#pragma once

#include "export/LoadedFileGuard.h"
#include "loading/messagebuf.h"
#include "ui/StreamRedirection.h"

#include <QFrame>
#include <QPointer>

#include <set>
#include <string>

class AboutWidget;
class ExportProgressDialog;
class ExportWhatDialog;
class FileItemModel;
class FileItemView;
class FileWidget;
class QHBoxLayout;
class QPushButton;
class QStackedWidget;
class QToolButton;

// Everything in the main window: the list of files, the pages beside it and the buttons below.
//
// Owns the loaded data, through the list's model. While it lives, what is written to std::cerr shows in the
// Messages tab, so only the interface thread may write there.
class MyFrame : public QFrame {
    Q_OBJECT

public:
    // `window` is what the "Close" button closes.
    MyFrame(const QString &displayName, const QString &applicationPath, QWidget *window);

    void AddFiles(const QStringList &paths);

    // Which time columns an export gets, as a bit mask.
    static constexpr quint32 defaultTimeColumns = 12; // date and time of day
    quint32 timeColumns() const { return timeColumns_; }
    // 0 stands for the default.
    void setTimeColumns(quint32 mask) { timeColumns_ = mask == 0 ? defaultTimeColumns : mask; }

    // Cancels an export that runs; true when none does. A window that is asked to close while one runs closes
    // as soon as it has ended.
    bool endExport();

Q_SIGNALS:
    void Message(const char *line);

public Q_SLOTS:
    void OnOpenFile();
    void OnCloseFile();
    void OnExportFile();
    void OnHelp();
    void OnSelectionChanged(const QModelIndex &current, const QModelIndex &previous);
    void OnFileLoaded(const QString &fileName);
    void OnFileRemoved(const QString &fileName);
    void OnPostFileRemoved(const QString &fileName);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QHBoxLayout *makeButtonRow();
    void connectAll();
    void describeControls();
    void updateExportButton();
    std::set<std::string> exportableGroups() const;
    FileNames protectedFiles();
    void exportData(int fileType, const std::string &item, const std::string &targetName,
                    std::int32_t splitPeriod);

    QString helpPath_;
    FileItemView *view_;
    FileItemModel *model_;
    QStackedWidget *pages_;
    FileWidget *fileWidget_;
    AboutWidget *aboutWidget_;
    messagebuf messages_;
    QToolButton *addButton_;
    QToolButton *removeButton_;
    QPushButton *exportButton_;
    QPushButton *helpButton_;
    QPushButton *closeButton_;
    ExportWhatDialog *exportDialog_ = nullptr; // made at the first export
    FileNames protectedFiles_;                 // null when they have changed
    bool isExporting_ = false;
    QPointer<ExportProgressDialog> exportProgress_; // of the export that runs
    bool closeAfterExport_ = false;
    quint32 timeColumns_ = defaultTimeColumns;
    StreamRedirection standardError_; // last, so that it ends before messages_ does
};
