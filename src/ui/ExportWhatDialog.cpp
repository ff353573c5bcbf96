#include "ui/ExportWhatDialog.h"

#include "export/ExportChoices.h"
#include "export/ExportNames.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

// The label of a control, which takes its name from it.
QLabel *makeLabel(const QString &text, QWidget *control) {
    auto *label = new QLabel(text);
    label->setBuddy(control);
    QString name = text;
    control->setAccessibleName(name.remove(QLatin1Char(':')));
    return label;
}

} // namespace

ExportWhatDialog::ExportWhatDialog(QWidget *parent, std::uint32_t timeColumns)
    : QDialog(parent),
      list_(new QListWidget),
      fileName_(new QLineEdit),
      browseButton_(new QPushButton(tr("Browse..."))),
      fileType_(new QComboBox),
      fileSplit_(new QComboBox),
      cancelButton_(new QPushButton(tr("Cancel"))),
      exportButton_(new QPushButton(tr("Export"))) {
    setWindowTitle(tr("Export"));
    list_->setSortingEnabled(true);
    for (const FileTypeChoice &choice : fileTypeChoices) {
        fileType_->addItem(textOf(choice.label), textOf(choice.extension));
    }
    for (const SplitChoice &choice : splitChoices) {
        fileSplit_->addItem(textOf(choice.label), choice.period);
    }
    previousType_ = fileType_->currentIndex();

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(makeQuestions());
    layout->addWidget(makeTimeColumns(timeColumns));
    layout->addLayout(makeButtonRow());
    timeColumns_->setEnabled(false);
    exportButton_->setEnabled(false);
    connectAll();
    describeControls();
    setFileName("export");
}

QLayout *ExportWhatDialog::makeQuestions() {
    auto *grid = new QGridLayout;
    auto *nameRow = new QHBoxLayout;
    nameRow->addWidget(fileName_);
    nameRow->addWidget(browseButton_);
    grid->addWidget(makeLabel(tr("Data to export:"), list_), 0, 0, Qt::AlignTop);
    grid->addWidget(list_, 0, 1);
    grid->addWidget(makeLabel(tr("File Name:"), fileName_), 1, 0);
    grid->addLayout(nameRow, 1, 1);
    grid->addWidget(makeLabel(tr("File Type:"), fileType_), 2, 0);
    grid->addWidget(fileType_, 2, 1, Qt::AlignLeft);
    grid->addWidget(makeLabel(tr("File Split:"), fileSplit_), 3, 0);
    grid->addWidget(fileSplit_, 3, 1, Qt::AlignLeft);
    constexpr int legibleName = 40; // characters
    fileName_->setMinimumWidth(fileName_->fontMetrics().averageCharWidth() * legibleName);
    return grid;
}

QGroupBox *ExportWhatDialog::makeTimeColumns(std::uint32_t checked) {
    timeColumns_ = new QGroupBox(tr("Text File Time Columns"));
    auto *grid = new QGridLayout(timeColumns_);
    // Two rows, filled from the top down.
    for (int i = 0; const TimeColumnChoice &choice : timeColumnChoices) {
        auto *box = new QCheckBox(textOf(choice.label));
        box->setChecked((checked & choice.flag) != 0);
        timeColumnBoxes_.at(static_cast<std::size_t>(i)) = box;
        grid->addWidget(box, i % 2, i / 2);
        ++i;
    }
    return timeColumns_;
}

QBoxLayout *ExportWhatDialog::makeButtonRow() {
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(cancelButton_);
    row->addWidget(exportButton_);
    browseButton_->setAutoDefault(false);
    exportButton_->setDefault(true);
    return row;
}

void ExportWhatDialog::describeControls() {
    list_->setAccessibleDescription(tr("Instruments and kinds of record that the open files hold"));
    fileName_->setAccessibleDescription(tr("Path of the file to be written"));
    browseButton_->setAccessibleDescription(tr("Chooses the file to be written"));
    fileType_->setAccessibleDescription(tr("Format of the file to be written"));
    fileSplit_->setAccessibleDescription(tr("Time that each file covers when the export is split"));
    timeColumns_->setAccessibleDescription(tr("Columns of a text file that tell the time"));
    for (QCheckBox *box : timeColumnBoxes_) {
        box->setAccessibleDescription(tr("A column of a text file that tells the time"));
    }
    cancelButton_->setAccessibleDescription(tr("Closes this window and writes nothing"));
    exportButton_->setAccessibleDescription(tr("Writes the file"));
}

void ExportWhatDialog::connectAll() {
    connect(browseButton_, SIGNAL(clicked(bool)), SLOT(OnBrowseClicked()));
    connect(fileName_, SIGNAL(editingFinished()), SLOT(OnStateChanged()));
    connect(fileName_, SIGNAL(textEdited(QString)), SLOT(OnFilenameEdited()));
    connect(fileType_, SIGNAL(currentIndexChanged(int)), SLOT(OnFileTypeChanged()));
    connect(list_, SIGNAL(itemSelectionChanged()), SLOT(OnListSelectionChanged()));
    connect(cancelButton_, SIGNAL(clicked(bool)), SLOT(reject()));
    connect(exportButton_, SIGNAL(clicked(bool)), SLOT(accept()));
}

// A list that comes back with the same selection is no change, and the name of the last export stays.
void ExportWhatDialog::fillList(const std::set<std::string> &groups) {
    const std::string before = selectedItem();
    nameIsUsers_ = false;
    {
        const QSignalBlocker blocker(list_);
        list_->clear();
        for (const std::string &group : groups) {
            auto *item = new QListWidgetItem(textOf(group));
            item->setData(Qt::UserRole, QByteArray::fromStdString(group)); // which may be no UTF-8
            list_->addItem(item);
        }
        list_->setCurrentRow(0);
    }
    if (selectedItem() != before) {
        OnListSelectionChanged();
    }
    OnStateChanged();
}

ExportWhatDialog::Results ExportWhatDialog::results() const {
    Results results;
    results.fileType = fileTypeChoices.at(static_cast<std::size_t>(fileType_->currentIndex())).number;
    results.targetName = fileName_->text().toStdString();
    for (std::size_t i = 0; i < timeColumnBoxes_.size(); ++i) {
        results.timeColumns |= timeColumnBoxes_.at(i)->isChecked() ? timeColumnChoices.at(i).flag : 0;
    }
    results.splitPeriod = fileSplit_->currentData().toInt();
    results.selectedItem = selectedItem();
    return results;
}

std::string ExportWhatDialog::selectedItem() const {
    const QList<QListWidgetItem *> selected = list_->selectedItems();
    return selected.isEmpty() ? std::string()
                              : selected.front()->data(Qt::UserRole).toByteArray().toStdString();
}

std::string ExportWhatDialog::extension() const {
    return fileType_->currentData().toString().toStdString();
}

void ExportWhatDialog::setFileName(const std::string &name) {
    fileName_->setText(QString::fromStdString(withExtension(name, extension())));
}

void ExportWhatDialog::OnStateChanged() {
    const auto &type = fileTypeChoices.at(static_cast<std::size_t>(fileType_->currentIndex()));
    timeColumns_->setEnabled(type.format == ExportFormat::text);
    exportButton_->setEnabled(!fileName_->text().isEmpty() && list_->count() > 0);
}

void ExportWhatDialog::OnBrowseClicked() {
    const QString name = QFileDialog::getSaveFileName(this, tr("Export Filename"), fileName_->text());
    if (!name.isEmpty()) {
        setFileName(name.toStdString());
    }
    OnStateChanged();
}

void ExportWhatDialog::OnFileTypeChanged() {
    const std::string before = fileType_->itemData(previousType_).toString().toStdString();
    previousType_ = fileType_->currentIndex();
    fileName_->setText(
        QString::fromStdString(withExtensionChanged(fileName_->text().toStdString(), before, extension())));
    OnStateChanged();
}

void ExportWhatDialog::OnFilenameEdited() {
    OnStateChanged();
}

void ExportWhatDialog::OnListSelectionChanged() {
    const std::string item = selectedItem();
    if (!nameIsUsers_ && !item.empty()) {
        setFileName(proposedName(item, fileName_->text().toStdString(), extension()));
    }
    OnStateChanged();
}
