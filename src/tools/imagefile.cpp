#include "tools/imagefile.h"

#include "runtime/runtimeerror.h"
#include "runtime/stagedfile.h"

namespace quorvale {

void writeImage(const QImage &image, const QString &path, const char *format)
{
    StagedFile file(path);
    if (!image.save(&file.device(), format)) {
        file.checkWrites();
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("cannot write %1").arg(path));
    }
    file.commit();
}

void writeFile(const QByteArray &bytes, const QString &path)
{
    StagedFile file(path);
    file.device().write(bytes);
    file.commit();
}

} // namespace quorvale
