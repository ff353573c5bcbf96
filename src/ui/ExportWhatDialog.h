#pragma once

#include <QDialog>
#include <QString>

#include <array>
#include <cstdint>
#include <set>
#include <string>

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLayout;
class QLineEdit;
class QListWidget;
class QPushButton;

// Asks what is to be exported, in which format and where to. Kept between exports, with the choices made in
// it.
class ExportWhatDialog : public QDialog {
    Q_OBJECT

public:
    struct Results {
        int fileType = 0; // a FileTypeChoice's number
        std::string targetName;
        std::uint32_t timeColumns = 0;
        std::int32_t splitPeriod = 0; // s
        std::string selectedItem;     // instrument ":" tag
    };

    // `timeColumns` is what is checked at first.
    ExportWhatDialog(QWidget *parent, std::uint32_t timeColumns);

    // Offers these kinds of data, each an instrument ":" tag, and selects the first.
    void fillList(const std::set<std::string> &groups);
    Results results() const;

public Q_SLOTS:
    void OnBrowseClicked();
    void OnStateChanged();
    void OnFileTypeChanged();
    void OnFilenameEdited();
    void OnListSelectionChanged();

private:
    QLayout *makeQuestions();
    QGroupBox *makeTimeColumns(std::uint32_t checked);
    QBoxLayout *makeButtonRow();
    void connectAll();
    void describeControls();

    std::string selectedItem() const;
    std::string extension() const;
    void setFileName(const std::string &name);

    QListWidget *list_;
    QLineEdit *fileName_;
    QPushButton *browseButton_;
    QComboBox *fileType_;
    QComboBox *fileSplit_;
    QGroupBox *timeColumns_ = nullptr;
    std::array<QCheckBox *, 6> timeColumnBoxes_{}; // in the order of timeColumnChoices
    QPushButton *cancelButton_;
    QPushButton *exportButton_;
    int previousType_ = 0;     // index in the combo box
    bool nameIsUsers_ = false; // nothing ever sets it: each selection proposes a name
};
