#pragma once

#include "runtime/stagedfile.h"

#include <memory>
#include <vector>

namespace quorvale {

// The outputs of one command, moved into place together or not at all: each
// is written completely beside its target first; commit() then replaces the
// targets one by one and, should a later rename fail, puts the earlier
// targets back as they were.
class OutputSet {
  public:
    OutputSet() = default;
    OutputSet(const OutputSet &) = delete;
    OutputSet &operator=(const OutputSet &) = delete;

    // A new staged output; refuses a target already in the set.
    StagedFile &add(const QString &target);
    bool isEmpty() const { return m_files.empty(); }
    // Drops an output that is no longer wanted; its temporary file goes.
    void discard(StagedFile &file);

    // Finishes every output, then renames them all over their targets.
    void commit();

  private:
    std::vector<std::unique_ptr<StagedFile>> m_files;
};

} // namespace quorvale
