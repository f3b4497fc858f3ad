#include "Benchmarks/Files/FilesBenchmarks.h"
#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/Harness/Report.h"
#include "FileCore/FileLoading.h"
#include "Quelm/Documents/DocumentSaving.h"
#include "TextCore/Check.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

namespace quelm::bench {

namespace {

constexpr std::uint32_t megabytes = 100;
constexpr std::string_view name = "records-100MB";

double secondsOf(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

void reportContest(std::string_view measurement, std::size_t bytes, const std::vector<ContestResult>& results) {
    const auto speed = [&](const ContestResult& result) {
        return report::Speed{static_cast<double>(bytes), result.seconds.median()};
    };
    report::ratio(filesLabel(measurement, name), results[1].name, speed(results[0]), speed(results[1]));
}

/// With the checksum that ours takes on the way.
void measureLoading(const QString& path, std::size_t size) {
    const Contestant ours{"quelm", [&]() -> std::optional<double> {
                              QElapsedTimer timer;
                              timer.start();
                              const auto loaded = loadFile(QFile::encodeName(path).toStdString());
                              require(loaded && loaded->bytes.size() == size, "the file is loaded");
                              return secondsOf(timer);
                          }};
    const Contestant peer{"qfile", [&]() -> std::optional<double> {
                              QElapsedTimer timer;
                              timer.start();
                              QFile file(path);
                              require(file.open(QIODevice::ReadOnly), "the file can be read");
                              const QByteArray bytes = file.readAll();
                              require(static_cast<std::size_t>(bytes.size()) == size, "the file is loaded");
                              return secondsOf(timer);
                          }};
    reportContest("load", size, hold({ours, peer}, {}));
}

/// Both up to the bytes being on the device; ours also takes a checksum and synchronizes the folder.
void measureSaving(const QString& path, const SharedText& text) {
    JSONContent content;
    content.text = TextRope(text);
    const Contestant ours{"quelm", [&]() -> std::optional<double> {
                              QElapsedTimer timer;
                              timer.start();
                              require(saveDocument(path, content).has_value(), "the file is saved");
                              return secondsOf(timer);
                          }};
    const Contestant peer{"qsavefile", [&]() -> std::optional<double> {
                              QElapsedTimer timer;
                              timer.start();
                              QSaveFile file(path);
                              require(file.open(QIODevice::WriteOnly), "the file can be written");
                              file.write(text.data(), static_cast<qint64>(text.size()));
                              require(file.commit(), "the file is saved");
                              return secondsOf(timer);
                          }};
    reportContest("save", text.size(), hold({ours, peer}, {}));
}

void measureSavingTree(const QString& path, const SharedText& text) {
    auto content = JSONContent::fromData(text);
    require(content && content->tree, "the generated document is JSON");
    content->text.reset();
    Samples samples;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        require(saveDocument(path, *content).has_value(), "the file is saved");
        samples.add(secondsOf(timer));
    }
    report::latency(filesLabel("save-tree", name), samples);
}

} // namespace

void measureWholeFiles(const Options& options) {
    if (name.find(options.only) == std::string_view::npos)
        return;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("datos.json"));
    const SharedText text = records(options, megabytes);
    measureSaving(path, text);
    measureLoading(path, text.size());
    measureSavingTree(path, text);
}

} // namespace quelm::bench
