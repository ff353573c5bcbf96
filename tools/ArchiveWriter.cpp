#include "tools/ArchiveWriter.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTimeZone>
#include <quazip.h>
#include <quazipfile.h>
#include <quazipnewinfo.h>

namespace {

constexpr std::int64_t halfHour = 1800; // seconds

// One member of an open archive.
class MemberSink : public ByteSink {
public:
    MemberSink(QuaZip &zip, const QString &name, std::int64_t utc, int compression) : member_(&zip) {
        QuaZipNewInfo info(name);
        // A fixed zone: packing again elsewhere must give the same bytes.
        info.dateTime = QDateTime::fromSecsSinceEpoch(utc, Qt::UTC);
        info.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        if (!member_.open(QIODevice::WriteOnly, info, nullptr, 0, Z_DEFLATED, compression)) {
            fail();
        }
    }

    void write(std::string_view bytes) override {
        const auto size = static_cast<qint64>(bytes.size());
        if (member_.write(bytes.data(), size) != size) {
            fail();
        }
    }

    void close() {
        member_.close();
        if (member_.getZipError() != ZIP_OK) {
            fail();
        }
    }

private:
    [[noreturn]] void fail() const {
        throw WriteError("cannot write " + QFile::encodeName(member_.getZip()->getZipName()).toStdString());
    }

    QuaZipFile member_;
};

std::string metadata(const RecordingOptions &recording, const std::string &stamp) {
    return "[Site]\n"
           "name=Example field\n"
           "altitude=1509\n"
           "canopy_height=0.4\n"
           "[Station]\n"
           "logger=" +
           recording.instrument +
           "\n"
           "begin=" +
           stamp +
           "\n"
           "minutes=30\n"
           "[Instruments]\n"
           "instr_1=QA-3410\n"
           "instr_1_tube_length=0.711\n"
           "instr_1_height=3.2\n"
           "[FileDescription]\n"
           "separator=tab\n"
           "header_lines_begin=DATAH\n"
           "acquisition_frequency=" +
           std::to_string(recording.rate) + "\n";
}

void writeArchive(DataFileWriter &recorder, const RecordingOptions &recording, const ArchiveOptions &archives,
                  std::uint64_t index, const QString &folder) {
    const std::string stamp = recorder.fileStamp();
    const std::int64_t begin = recording.start + static_cast<std::int64_t>(index) * halfHour;
    const QString name = QFile::decodeName((stamp + "_" + recording.instrument).c_str());
    const QString path = folder + "/" + name + ".ghg";

    QuaZip zip(path);
    zip.setDataDescriptorWritingEnabled(
        false); // sizes stand in front of the bytes, as the loggers write them
    if (!zip.open(QuaZip::mdCreate)) {
        throw WriteError("cannot write " + QFile::encodeName(path).toStdString());
    }
    const bool named = archives.namelessEvery == 0 || (index + 1) % archives.namelessEvery != 0;
    MemberSink data(zip, name + ".data", begin + halfHour, archives.compression);
    recorder.write(data, RunLength::ofSlots(static_cast<std::uint64_t>(halfHour) * recording.rate), named);
    data.close();
    MemberSink description(zip, name + ".metadata", begin + halfHour, archives.compression);
    description.write(metadata(recording, stamp));
    description.close();
    zip.close();
    if (zip.getZipError() != ZIP_OK) {
        throw WriteError("cannot write " + QFile::encodeName(path).toStdString());
    }
}

} // namespace

void writeArchives(DataFileWriter &recorder, const RecordingOptions &recording,
                   const ArchiveOptions &archives, const std::string &folder) {
    const QString target = QFile::decodeName(folder.c_str());
    if (!QDir().mkpath(target)) {
        throw WriteError("cannot make the folder " + folder);
    }
    for (std::uint64_t index = 0; index < archives.count; ++index) {
        writeArchive(recorder, recording, archives, index, target);
    }
}
