#pragma once

#include "data/DataFragment.h"
#include "data/RecordBatch.h"

#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Reads the lines of one source in order: key lines, header lines, record lines.
//
// A header line starts a new fragment, which takes the record lines of its tag that follow. The state runs on
// from member to member of an archive. Belongs to the thread that reads the source.
class DataFileParser {
public:
    // `fileNameTag` names the instrument until a key line does.
    DataFileParser(std::string fileName, std::string fileNameTag);

    void setSubFileName(std::string name);
    // Of the source, for the fragments that start from now on.
    void setSourceState(std::shared_ptr<const SourceState> state) { header_.state = std::move(state); }

    // Handles one line, without its line end, and gives the fragment that it started, if any. `offset` is the
    // line's offset as the line reader reports it, `shortfall` by how much that falls short of the true one.
    // Never throws: the text of an exception, also that of a failed allocation, goes to messageText(), and
    // the next line can be handled.
    std::shared_ptr<DataFragment> parseLine(std::uint64_t offset, std::string_view line,
                                            std::uint64_t shortfall);

    // Of the fragment that parseLine() has just given. Once it is known to have a place, the one that it
    // takes over from is done; without one, that goes on taking record lines as if the header line had not
    // come.
    void keepStarted();
    void takeStartedBack();

    // The block that takes the record line `line`, when nothing is left to be done for that but to read its
    // fields and accept them; null for any line that parseLine must handle. Until the next such line is
    // handled, other threads may read fields by the block's layout.
    DataFragment *blockReadyFor(std::string_view line) const;
    // Handles a line for which blockReadyFor() gave a block, and whose fields have been read, as parseLine
    // does. Never throws.
    void takeRead(ReadLine &line, std::uint64_t shortfall);

    // "ERROR: " and what went wrong, for each line that could not be handled, up to about 10,000 characters.
    const std::string &messageText() const { return messageText_; }
    void appendError(std::string_view what);

    // Notes that a line was lost to a failed allocation.
    void noteShortage(const std::bad_alloc &error);
    bool wasShortOfMemory() const { return wasShortOfMemory_; }

    // Why records of the source are left out, for people; empty when none are for such a reason. Bad lines
    // are none.
    const std::string &problem() const { return problem_; }
    // What the source's blocks take, as it is reckoned.
    const MemoryAllowance &allowance() const { return *allowance_; }
    // True when the source asks for more memory than its size allows it to take: no further line is
    // handled.
    bool hasGivenUp() const { return hasGivenUp_; }

    // True once a header line has come, be it in vain.
    bool foundHeader() const { return foundHeader_; }

    // Lets go of the fragments that took record lines.
    void finish() {
        current_ = {};
        replaced_.block = nullptr;
    }

private:
    static constexpr std::size_t recordTags = 3;

    template <typename Handling>
    void handleSafely(std::uint64_t position, std::size_t length, const Handling &handle);
    void noteRefusal(const char *reason);
    void giveUp(std::string_view reason, std::uint64_t position);
    std::shared_ptr<DataFragment> handleLine(std::uint64_t offset, std::string_view line,
                                             std::uint64_t shortfall);
    void handleRecord(std::size_t tag, std::uint64_t offset, std::string_view line);
    std::shared_ptr<DataFragment> startFragment(std::size_t tag, std::string_view columnNames,
                                                std::uint64_t position);
    const Timezone &zone();
    void takeDiagnosticNames(std::string_view names);
    void handleKeyLine(std::string_view line);

    SourceHeader header_;
    std::optional<Timezone> zone_; // of the header, once a block has asked for it
    std::shared_ptr<MemoryAllowance> allowance_ = std::make_shared<MemoryAllowance>();
    DiagnosticNames diagnosticNames_ = std::make_shared<const std::vector<std::string>>();
    std::uint64_t diagnosticNamesMemory_ = 0;
    std::array<std::shared_ptr<DataFragment>, recordTags> current_; // DATA, DATASTAT, DATABIO
    // For each of them, whether it has taken no line of the present archive member.
    std::array<bool, recordTags> isOfEarlierMember_{};
    // What the last header line took the place of.
    struct Replaced {
        std::size_t tag = 0;
        std::shared_ptr<DataFragment> block; // null when there was none, or it is done
        bool isOfEarlierMember = false;
    };
    Replaced replaced_;
    std::string messageText_;
    std::string problem_;
    bool hasGivenUp_ = false;
    bool wasShortOfMemory_ = false;
    bool foundHeader_ = false;
};
