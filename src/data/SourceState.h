#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <tuple>

// What a file was like while it was loaded: whether reading it again gives what loading gave.
//
// Changed only by the thread that loads the file; afterwards shared by its blocks and only read, from any
// thread.
class SourceState {
public:
    // Of the file as it is now. `isArchive` when it is read as one.
    SourceState(std::string path, bool isArchive);

    // Something was wrong with a part of the file, and was said then.
    void addProblem(const QString &problem) { problems_.insert(problem); }
    bool isKnown(const QString &problem) const { return problems_.contains(problem); }

    // Why the file may hold others than the loaded records now, for people; empty when it does not.
    // A plain file that has only grown is one that is still being written: what was loaded stays as it was.
    QString change() const;
    // The path leads to the same file, and nothing was written to it.
    bool isAsItWas() const;

private:
    struct Stamp {
        std::int64_t size = 0;                         // bytes
        std::tuple<std::int64_t, std::int64_t> time;   // of the last change: s and ns
        std::tuple<std::uint64_t, std::uint64_t> node; // device and number

        bool operator==(const Stamp &) const = default;
    };

    std::optional<Stamp> stampNow() const;

    std::string path_;
    bool isArchive_;
    std::optional<Stamp> stamp_; // nothing when there was no file
    std::set<QString> problems_;
};
