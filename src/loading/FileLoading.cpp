#include "loading/FileLoading.h"

#include "data/SourceState.h"
#include "loading/ParsingThreads.h"
#include "loading/RecordPipeline.h"
#include "loading/lines/Archive.h"
#include "loading/lines/ChunkLineReader.h"

#include <QFileInfo>
#include <QSet>
#include <quazip.h>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

namespace {

// Asks for none itself.
QString shortOfMemory() {
    return QStringLiteral("There is not enough memory: records may be missing");
}

// Progress is worked out once in this many lines, so that reports do not slow the reading.
constexpr int linesBetweenReports = 1000;

MemberList membersOf(const QString &fileName) {
    MemberList list;
    list.problem = whyNotLoadable(fileName);
    if (!list.problem.isEmpty()) {
        return list;
    }
    list.totalSize = QFileInfo(fileName).size();
    if (list.totalSize == 0) {
        return list;
    }
    if (isArchiveName(fileName)) {
        return listArchive(fileName);
    }
    list.members.push_back({QString(), list.totalSize});
    return list;
}

// One load: feeds the lines of all members to the data set and reports how far it is.
class Loading {
public:
    Loading(const QString &fileName, DataSet &source, const std::atomic<bool> &cancelled,
            const LoadProgress &progress, ParsingThreads *threads)
        : fileName_(fileName),
          source_(source),
          cancelled_(cancelled),
          progress_(progress),
          threads_(threads),
          load_(threads),
          fileSize_(QFileInfo(fileName).size()) {}

    LoadReport run() {
        source_.setSourceState(state_);
        const MemberList list = membersOf(fileName_);
        note(list.problem);
        total_ = list.totalSize;
        progress_(0, fileSize_);
        if (cancelled_) {
            return report_;
        }
        readMembers(list);
        note(QString::fromStdString(source_.problem()));
        source_.finishLoading();
        progress_(100, fileSize_);
        judge(list);
        return report_;
    }

private:
    void note(const QString &problem) {
        // One line for people, however many members are damaged.
        constexpr int longestProblem = 1000;
        if (problem.isEmpty() || report_.problem.size() > longestProblem) {
            return;
        }
        report_.problem += (report_.problem.isEmpty() ? QString() : QStringLiteral("; ")) + problem;
    }

    void readMembers(const MemberList &list) {
        const bool isArchive = isArchiveName(fileName_);
        if (isArchive && !list.members.empty() && !archive_.open(QuaZip::mdUnzip)) {
            note(QStringLiteral("The archive is gone or has changed while it was read"));
            return;
        }
        QSet<QString> names;
        for (auto member = list.members.begin(); member != list.members.end() && !hasEnded(); ++member) {
            // A member is found by its name: one without any, and of several that share one the others,
            // cannot be read.
            if (isArchive && (member->name.isEmpty() || names.contains(member->name))) {
                note(member->name.isEmpty()
                         ? QStringLiteral("A member of the archive has no name and cannot be read")
                         : QStringLiteral("The archive holds \"%1\" more than once: only the first is read")
                               .arg(member->name));
                continue;
            }
            names.insert(member->name);
            readMember(*member,
                       isArchive ? reader_.openMember(archive_, member->name) : reader_.open(fileName_, {}));
        }
    }

    void readMember(const ArchiveMember &member, bool isOpen) {
        source_.setSubFileName(member.name.toStdString());
        if (isOpen) {
            readLines();
        }
        bytesRead_ += member.size;
        reader_.finish();
        note(reader_.problem());
        state_->addProblem(reader_.problem());
    }

    void readLines() {
        askForHelp();
        while (!hasEnded() && nextLine()) {
            handleLine();
        }
        if (pipeline_ && hasEnded()) {
            pipeline_->dropAll();
        } else if (pipeline_) {
            pipeline_->takeAll();
        }
    }

    bool hasEnded() const { return cancelled_ || source_.hasGivenUp(); }

    bool nextLine() {
        if (reader_.nextLineOfBlock()) {
            return true;
        }
        if (pipeline_) {
            pipeline_->beginRefill();
        }
        const bool isThere = reader_.refill();
        askForHelp();
        return isThere;
    }

    // Other loads come and go, so that there are threads to help with one piece of a source, and none with
    // the next.
    void askForHelp() {
        isHelped_ = threads_ != nullptr && threads_->canHelpWith(reader_.size());
        if (isHelped_ && !pipeline_) {
            isHelped_ = makePipeline();
        }
        noteMemory();
    }

    // False when there is no memory for it, and one thread does it all.
    bool makePipeline() {
        try {
            reader_.addBlock();
            pipeline_.emplace(*threads_, [this](RecordBatch &batch, std::uint64_t shortfall) {
                takeBatch(batch, shortfall);
            });
        } catch (const std::bad_alloc &) {
            return false;
        }
        return true;
    }

    void handleLine() {
        if (mayGoAhead_) {
            if (DataFragment *const block = source_.blockReadyFor(reader_.line())) {
                pipeline_->add(*block, reader_.line(), reader_.lineOffset(), reader_.shortfall());
                return;
            }
        }
        if (pipeline_ && !pipeline_->isEmpty()) {
            pipeline_->takeAll();
            if (hasEnded()) {
                return;
            }
        }
        source_.parseLine(reader_.lineOffset(), reader_.line(), reader_.shortfall());
        noteMemory();
        noteLine(reader_.lineOffset());
    }

    void takeBatch(RecordBatch &batch, std::uint64_t shortfall) {
        for (ReadLine &line : batch.lines()) {
            if (hasEnded()) {
                return;
            }
            source_.takeRead(line, shortfall);
            noteLine(line.offset);
        }
        noteMemory();
    }

    // A source is read no further than to the line for which there is no memory. So where that may come soon,
    // each line is handled before the next one is looked for.
    void noteMemory() {
        mayGoAhead_ = isHelped_ && source_.memoryLeft() >= RecordPipeline::mostMemoryOfRecords;
    }

    void noteLine(std::uint64_t offset) {
        if (++linesSinceReport_ == linesBetweenReports) {
            linesSinceReport_ = 0;
            reportProgress(static_cast<qint64>(offset));
        }
    }

    void reportProgress(qint64 offset) {
        if (total_ <= 0) {
            return;
        }
        // A directory of an archive may understate its members' sizes.
        const auto percent = static_cast<int>(std::min<qint64>((offset + bytesRead_) * 100 / total_, 100));
        if (percent > lastPercent_) {
            lastPercent_ = percent;
            progress_(percent, fileSize_);
        }
    }

    // Tells a file that is no data file from one that merely holds no record.
    void judge(const MemberList &list) {
        if (cancelled_ || !report_.problem.isEmpty()) {
            return;
        }
        if (source_.wasShortOfMemory()) {
            report_.problem = shortOfMemory();
            return;
        }
        if (fileSize_ == 0) {
            report_.problem = QStringLiteral("The file is empty");
            return;
        }
        if (list.members.empty() || !source_.foundHeader()) {
            report_.problem = isArchiveName(fileName_)
                                  ? QStringLiteral("No data header line was found in the archive")
                                  : QStringLiteral("No data header line was found: this is no data file");
            return;
        }
        const auto &fragments = source_.fragments();
        if (std::all_of(fragments.begin(), fragments.end(),
                        [](const auto &fragment) { return fragment->recordCount() == 0; })) {
            // Nothing but errors, such as an unknown time zone, is more than an idle analyser.
            (source_.messageText().empty() ? report_.remark : report_.problem) =
                QStringLiteral("The file holds no records");
        }
    }

    const QString &fileName_;
    DataSet &source_;
    const std::atomic<bool> &cancelled_;
    const LoadProgress &progress_;
    // As it is before any of it is read: what changes meanwhile has changed since.
    const std::shared_ptr<SourceState> state_ =
        std::make_shared<SourceState>(fileName_.toStdString(), isArchiveName(fileName_));
    ParsingThreads *const threads_; // null when nobody helps
    const ParsingThreads::Load load_;
    QuaZip archive_{fileName_}; // opened for an archive only
    ChunkLineReader reader_;    // one for all members: its block would cost more than a small one
    std::optional<RecordPipeline> pipeline_; // since others have helped for the first time
    bool mayGoAhead_ = false;                // of lines whose fields are still to be read
    bool isHelped_ = false;                  // with the present piece of the source
    qint64 fileSize_;
    qint64 total_ = 0;     // bytes of all members, uncompressed
    qint64 bytesRead_ = 0; // of the members before the present one
    int linesSinceReport_ = 0;
    int lastPercent_ = 0;
    LoadReport report_;
};

} // namespace

QString whyNotLoadable(const QString &fileName) {
    const QFileInfo file(fileName);
    // Bytes that are no UTF-8 do not survive in a QString, and Qt finds no file by what is left.
    if (!file.exists() && fileName.contains(QChar(QChar::ReplacementCharacter))) {
        return QStringLiteral("The file cannot be opened: its name is no UTF-8");
    }
    if (!file.exists()) {
        return QStringLiteral("The file does not exist");
    }
    if (file.isDir()) {
        return QStringLiteral("This is a folder: add the files in it");
    }
    if (!file.isFile()) {
        return QStringLiteral("This is not a regular file");
    }
    if (!file.isReadable()) {
        return QStringLiteral("The file cannot be read: no permission");
    }
    return {};
}

LoadReport loadFile(const QString &fileName, DataSet &source, const std::atomic<bool> &cancelled,
                    const LoadProgress &progress, ParsingThreads *threads) {
    qint64 fileSize = 0;
    try {
        fileSize = QFileInfo(fileName).size();
        return Loading(fileName, source, cancelled, progress, threads).run();
    } catch (const std::bad_alloc &) {
        // The load has given back what it took for itself, so that there is memory for what follows.
        source.finishLoading();
        progress(100, fileSize);
        return {shortOfMemory(), QString()};
    }
}

std::vector<QString> messagesOf(const DataSet &source, const LoadReport &report) {
    std::vector<QString> messages;
    if (const std::uint32_t failures = source.checksumFailures(); failures != 0) {
        messages.push_back(QStringLiteral("Checksum errors: %1").arg(failures));
    }
    for (const QString &text :
         {QString::fromStdString(source.messageText()), report.problem, report.remark}) {
        if (!text.isEmpty()) {
            messages.push_back(text);
        }
    }
    return messages;
}
