#pragma once

#include <QString>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// An archive that is made to cost as much as it can.
struct HostileArchive {
    std::string name; // for people
    // Writes it; its members together have about `bytes` bytes once they are inflated, as far as they have
    // any.
    std::function<void(const QString &path, std::size_t bytes)> write;
};

// One member that inflates a thousand times, and very many members.
std::vector<HostileArchive> hostileArchives();
