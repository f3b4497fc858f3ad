#include "Benchmarks/Files/JournaledDocument.h"

#include "Benchmarks/Files/FilesBenchmarks.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Foundation/Preferences.h"
#include "TextCore/Check.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

namespace quelm::bench {

namespace {

void writeRecords(const QString& path, const Options& options, std::uint32_t megabytes) {
    const SharedText text = records(options, megabytes);
    const auto size = static_cast<qint64>(text.size());
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size, "the file is written");
}

} // namespace

JournaledDocument::JournaledDocument(const Options& options, std::uint32_t megabytes, EditorMode mode) {
    const QString path = folder_.filePath(QStringLiteral("datos.json"));
    writeRecords(path, options, megabytes);
    auto loaded = loadDocument(path);
    require(loaded.has_value(), "the file can be opened");
    document_ = std::make_unique<JSONDocument>(std::make_shared<DocumentConfiguration>(path));
    document_->configuration().setFileState(loaded->state);
    // A document begins as a tree, and stays one when it is read anew.
    document_->reload(std::move(loaded->content));
    if (mode == EditorMode::text) {
        bool isDone = false;
        auto change = document_->setMode(EditorMode::text, [&isDone](const auto& result) {
            require(result.has_value(), "the mode changes");
            isDone = true;
        });
        while (!isDone)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        document_->attachTextBuffer(std::make_shared<TextStorage>(*document_->content().text));
    }
    journal_ = std::make_unique<DocumentJournal>(*document_, journalFolder(), thread_);
}

void JournaledDocument::replace(TextRange range, const TextRope& replacement) {
    text().replaceCharacters(range, replacement);
    document_->noteTextBufferEdited();
}

double JournaledDocument::growth(const std::function<void()>& edit) {
    const double before = journalSize();
    edit();
    return journalSize() - before;
}

double JournaledDocument::journalSize() {
    journal_->flush();
    double size = 0;
    for (const QFileInfo& file : QDir(journalFolder()).entryInfoList(QDir::Files))
        size += static_cast<double>(file.size());
    return size;
}

void JournaledDocument::abandon() {
    journal_->flush();
    journal_.reset();
}

} // namespace quelm::bench
