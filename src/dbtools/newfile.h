#pragma once

#include <QString>
#include <functional>

namespace quorvale {

// Builds a new file through the one safe-write path (StagedFile): `fill`
// writes a temporary file beside the target (it exists, empty, for the
// embedded engine to open and fill), which is flushed to disk and renamed
// over the target only when fill returns. An existing target is refused unless `replace`. Throws
// RuntimeError naming the target; the temporary file never outlives a failure.
void buildNewFile(const QString &path, bool replace,
                  const std::function<void(const QString &tempPath)> &fill);

} // namespace quorvale
