#include "PhoneBackup/base/OpenFile.h"

#include "Files/OpenToRead.h"

namespace PhoneBackup {

bool openForReading(QFile &file, Notice *why)
{
    const Files::Opened opened = Files::openToRead(file.fileName());
    if (opened.descriptor < 0) {
        if (why) {
            *why = opened.error == Files::kNotRegular ? Notice("base.notRegular")
                                                      : Notice(qt_error_string(opened.error));
        }
        return false;
    }
    return file.open(opened.descriptor,
                     QIODevice::ReadOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle);
}

} // namespace PhoneBackup
