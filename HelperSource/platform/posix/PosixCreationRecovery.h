#pragma once

#include "ports/CreationJournal.h"

#include <string>
#include <vector>

namespace orvane {

/// `CreationRecovery` over the entries of a `PosixCreationJournal`.
///
/// An item counts as left by the creation when the entry names it in a folder that counts, it is of the noted kind and this
/// user's, was born no earlier than the creation began (where the file system tells) and no part of it was changed
/// after the process ended. That moment is known to a second for the last item and to two ticks of the clock for all others.
class PosixCreationRecovery final : public CreationRecovery {
public:
    explicit PosixCreationRecovery(std::string directory) : _directory(std::move(directory)) {}

    /// Whether an entry stands there whose process has ended: some system calls, of which one where nothing was ever noted. What it
    /// names may be gone. Any thread.
    [[nodiscard]] bool mayHaveRemains() const;

    [[nodiscard]] std::vector<CreationRemains> remains() override;
    std::size_t remove(const CreationRemains &remains) override;
    void keep(const CreationRemains &remains) override;

private:
    std::string _directory;
};

} // namespace orvane
