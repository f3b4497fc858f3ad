#pragma once

#include "FileCore/FileLoading.h"
#include "FileCore/JournalContents.h"
#include "FileCore/JournalRecovery.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalReplay.h"
#include "Quelm/Recovery/JournalSummary.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Tests/Quelm/Documents/EditedDocumentTest.h"
#include "Tests/Quelm/Recovery/RecordLines.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quelm {

/// A document with a file and a journal.
class JournaledDocumentTest : public EditedDocumentTest {
protected:
    ~JournaledDocumentTest() override { journal.reset(); }

    static inline const QString filePath = QStringLiteral("/casa/datos.json");

    /// The document has read a file with that text, and shows it as text.
    void openText(std::string_view text) {
        describeFile(text);
        edit(text);
        begin();
    }
    /// The same as a tree.
    void openTree(std::string_view text) {
        describeFile(text);
        Preferences::setInitialMode(Preferences::InitialMode::tree);
        document.apply(contentOf(text));
        begin();
    }
    void describeFile(std::string_view text) {
        fileText = text;
        document.configuration().setFileLocation(filePath);
        document.configuration().setFileState(FileState{.stamp = {}, .checksum = ContentChecksum::of(text)});
    }
    void begin() { journal = std::make_unique<DocumentJournal>(document, folder.path(journalFolder), thread); }

    // Changes as users make them.

    void typeAt(qint64 location, qint64 removed, const QString& text) {
        document.textBuffer()->replaceCharacters({location, removed}, text);
        document.noteTextBufferEdited();
    }
    void applyEdits(std::vector<TreeEdit> edits) { undoList = document.applyTreeEdits(edits); }
    void undoEdits() { undoList = document.applyTreeEdits(undoList); }
    void reformat(const JSONStyle& style) {
        auto content = ContentConversion::reformat(document.snapshot(), style, {});
        ASSERT_TRUE(content);
        document.replaceContent(*std::move(content), &manager, ContentOrigin::reformatting);
    }
    void changeMode(EditorMode mode) {
        bool isDone = false;
        const auto task = document.setMode(mode, [&](const auto& result) { isDone = result.has_value(); });
        ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
        if (mode == EditorMode::text)
            document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    }
    const JSONTree& tree() const { return *document.content().tree; }
    NodeID root() const { return tree().root(); }
    NodeID child(std::int64_t index) const { return tree().children(root())[index]; }

    // A save, step by step.

    void beginSave() {
        saved = document.snapshot();
        savedToken = document.stateToken().current();
        willReplace = journal->willSave(filePath);
    }
    /// What the thread that saves does in the end.
    void replaceFile() {
        const SharedText bytes = JSONDocument::fileContents(saved);
        EXPECT_TRUE(willReplace(ContentChecksum::of(bytes.view())));
        fileText = bytes.view();
    }
    void endSave() {
        describeFile(std::string(fileText));
        journal->didSave();
        document.noteSaved(savedToken);
    }
    void save() {
        beginSave();
        replaceFile();
        endSave();
    }

    // What is on the device.

    QStringList journalFiles() {
        thread.wait();
        return QDir(folder.path(journalFolder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    std::vector<journal::Record> records() {
        const QStringList files = journalFiles();
        EXPECT_EQ(files.size(), 1);
        if (files.size() != 1)
            return {};
        const std::string bytes = TemporaryFolder::contents(folder.path(journalFolder + u'/' + files.front()));
        bytesWritten = bytes.size();
        contents = JournalContents::read(SharedText(bytes));
        EXPECT_EQ(contents.end, JournalContents::End::whole);
        std::vector<journal::Record> records;
        for (const SharedText& payload : contents.records) {
            auto record = journal::decode(payload);
            EXPECT_TRUE(record.has_value());
            if (record)
                records.push_back(*std::move(record));
        }
        return records;
    }
    /// A line each, without the base at the beginning.
    std::vector<std::string> lines() {
        std::vector<std::string> lines;
        for (const journal::Record& record : records())
            lines.push_back(lineOf(record));
        if (!lines.empty())
            lines.erase(lines.begin());
        return lines;
    }
    std::size_t journalSize() {
        records();
        return bytesWritten;
    }

    /// What is recovered when the files hold what the base of that number, of those that count, says.
    std::string recovered(std::string_view file, std::size_t index = 0) {
        const std::vector<journal::Record> all = records();
        const JournalSummary summary = JournalSummary::of(contents);
        EXPECT_FALSE(summary.isDamaged);
        EXPECT_LT(index, summary.starts.size());
        if (index >= summary.starts.size())
            return "no base";
        const JournalSummary::Start& start = summary.starts[index];
        EXPECT_EQ(start.base.checksum.value_or(ContentChecksum::of(file)), ContentChecksum::of(file));
        auto replay = JournalReplay::start(start.base, SharedText(file), summary.returnsSince(start));
        if (!replay)
            return "no start";
        for (std::size_t next = start.record; next < all.size(); ++next)
            if (!replay->apply(all[next]))
                return "record " + std::to_string(next) + " fails: " + lineOf(all[next]);
        wasModified = summary.isModifiedSince(start);
        EXPECT_EQ(replay->isModified(), wasModified);
        recoveredMode = replay->mode();
        auto content = std::move(*replay).content();
        return content ? std::string(JSONDocument::fileContents(*content).view()) : "no content";
    }
    std::string recovered() { return recovered(fileText); }

    static inline const QString journalFolder = QStringLiteral("estado/recovery");
    TemporaryFolder folder;
    JournalThread thread;
    std::unique_ptr<DocumentJournal> journal;
    std::string fileText;
    std::vector<TreeEdit> undoList;
    JSONContent saved;
    StateToken::Value savedToken = 0;
    std::function<bool(const ContentChecksum&)> willReplace;
    JournalContents contents;
    std::size_t bytesWritten = 0;
    bool wasModified = false;
    EditorMode recoveredMode = EditorMode::tree;
};

} // namespace quelm
