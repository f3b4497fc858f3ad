#pragma once

#include "Benchmarks/Options.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QTemporaryDir>

#include <cstdint>
#include <functional>
#include <memory>

namespace quelm::bench {

/// A document of records that was read from a file, with its journal.
class JournaledDocument {
public:
    JournaledDocument(const Options& options, std::uint32_t megabytes, EditorMode mode);

    JSONDocument& document() { return *document_; }
    TextStorage& text() { return *document_->textBuffer(); }
    /// An edit as a text editor makes it.
    void replace(TextRange range, const TextRope& replacement);

    /// What the journal grows by with the edits, in bytes.
    double growth(const std::function<void()>& edit);

    /// Leaves the journal behind, as the end of the program would. Nothing can be edited afterwards.
    void abandon();

    QString journalFolder() const { return folder_.filePath(QStringLiteral("recovery")); }

private:
    double journalSize();

    QTemporaryDir folder_;
    JournalThread thread_;
    std::unique_ptr<JSONDocument> document_;
    std::unique_ptr<DocumentJournal> journal_;
};

} // namespace quelm::bench
