#pragma once

#include "data/DataFragment.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Reads the lines of one source in order: key lines, header lines, record lines.
//
// A header line starts a new fragment, which is handed to `onFragment` and takes the record lines of its tag
// that follow. The state runs on from member to member of an archive.
class DataFileParser {
public:
    using FragmentSink = std::function<void(std::shared_ptr<DataFragment>)>;

    // `fileNameTag` names the instrument until a key line does.
    DataFileParser(std::string fileName, std::string fileNameTag);

    void setSubFileName(std::string name);

    // Handles one line, without its line end. `offset` is the line's offset as the line reader reports it,
    // `shortfall` by how much that falls short of the true one. Never throws: the text of an exception goes
    // to messageText().
    void parseLine(std::uint64_t offset, std::string_view line, std::uint64_t shortfall,
                   const FragmentSink &onFragment);

    // "ERROR: " and what went wrong, for each line that could not be handled, up to about 10,000 characters.
    const std::string &messageText() const { return messageText_; }
    // True once a header line has come, be it in vain.
    bool foundHeader() const { return foundHeader_; }

    void appendError(std::string_view what);

private:
    static constexpr std::size_t recordTags = 3;

    void handleLine(std::uint64_t offset, std::string_view line, std::uint64_t shortfall,
                    const FragmentSink &onFragment);
    bool handleRecord(std::uint64_t offset, std::string_view line);
    bool handleHeader(std::uint64_t position, std::string_view line, const FragmentSink &onFragment);
    bool handleDiagnosticNames(std::string_view line);
    bool handleKeyLine(std::string_view line);

    SourceHeader header_;
    std::vector<std::string> diagnosticNames_;
    std::array<std::shared_ptr<DataFragment>, recordTags> current_; // in the order of the tags' table
    std::string messageText_;
    bool foundHeader_ = false;
};
