#include "FileCore/FileStamp.h"
#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "Quelm/TextEngine/TextEditing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>

// Whole sessions of a document with a journal, in random actions: whenever the program ended, what comes back is what
// the document held.

namespace quelm {
namespace {

/// The number of actions of each session: a few, or as the environment says for a longer run.
int actionCount() {
    const char* asked = std::getenv("QUELM_RECOVERY_ACTIONS");
    return asked ? std::atoi(asked) : 250;
}

class RecoveredDocuments : public testing::TestWithParam<unsigned> {
protected:
    RecoveredDocuments() {
        QDir(home_.path()).mkpath(QStringLiteral("casa"));
        begin(oneIn(4) ? JSONContent::empty() : openFile());
    }
    ~RecoveredDocuments() override { end(); }

    // Chance.

    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    template <class Array>
    const auto& oneOf(const Array& array) {
        return array[below(std::size(array))];
    }

    // Files.

    QString path(const QString& name) const { return home_.filePath(name); }
    QString folder() const { return path(QStringLiteral("recovery")); }
    QString randomFile() {
        static const std::array names{QStringLiteral("casa/a.json"), QStringLiteral("casa/b.json"),
                                      QStringLiteral("casa/ñ.json")};
        return path(oneOf(names));
    }
    static void write(const QString& path, std::string_view bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    static std::string read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(no file)";
    }
    static FileState stateOf(const QString& path) {
        return {.stamp = FileStamp::of(path.toStdString()).value(), .checksum = ContentChecksum::of(read(path))};
    }

    // The document, as its window keeps it.

    JSONContent openFile() {
        static constexpr std::array<std::string_view, 6> texts{
            "{\"b\": [1, 2.50, true],\r\n \"a\": {\"x\": \"\\u00f1\"}, \"b\": null}\n",
            "[[], {}, \"largo largo largo largo largo largo largo largo largo largo largo largo largo largo\", 1e9]",
            "\xEF\xBB\xBF{\n    \"z\": {\"y\": [0]},\n    \"a\": 1\n}",
            "7",
            "{\"no es\": JSON",
            "",
        };
        const QString file = randomFile();
        write(file, oneOf(texts));
        filePath_ = file;
        return *JSONContent::fromData(SharedText(read(file)));
    }

    void begin(JSONContent content) {
        makeDocument();
        document_->apply(std::move(content));
        journal_ = std::make_unique<DocumentJournal>(*document_, folder(), *thread_);
    }
    void makeDocument() {
        Preferences::setInitialMode(oneIn(2) ? Preferences::InitialMode::text : Preferences::InitialMode::tree);
        thread_ = std::make_unique<JournalThread>();
        document_ = std::make_shared<JSONDocument>();
        if (filePath_) {
            document_->configuration().setFileLocation(*filePath_);
            if (QFile::exists(*filePath_))
                document_->configuration().setFileState(stateOf(*filePath_));
        }
        undoManager_ = std::make_unique<UndoManager>();
        undoManager_->setStateToken(&document_->stateToken());
        model_ = std::make_unique<EditorModel>(document_);
        model_->setUndoManager(undoManager_.get());
        QObject::connect(document_.get(), &JSONDocument::revisionChanged, model_.get(), [this] { show(); });
        QObject::connect(document_.get(), &JSONDocument::didApply, model_.get(),
                         [this] { undoManager_->removeAllActions(); });
    }
    /// Brings the editor of the mode up to date, as its view does.
    void show() {
        if (document_->mode() == EditorMode::tree) {
            editing_.reset();
            return model_->tree().reload();
        }
        if (document_->textBuffer())
            return;
        auto storage = std::make_shared<TextStorage>(*document_->content().text);
        editing_ = std::make_unique<TextEditing>(storage);
        editing_->setUndoManager(undoManager_.get());
        document_->attachTextBuffer(std::move(storage));
        QObject::connect(editing_.get(), &TextEditing::textDidChange, model_.get(), &EditorModel::noteTextChange);
    }
    /// The process ends: what is on the device stays.
    void end() {
        editing_.reset();
        model_.reset();
        undoManager_.reset();
        journal_.reset();
        thread_.reset();
        document_.reset();
    }

    /// What the document would be saved as.
    std::string bytes() const {
        if (document_->isTextBufferEdited())
            return std::string(document_->textBuffer()->text().contiguous().view());
        return std::string(JSONDocument::fileContents(document_->content()).view());
    }

    // Actions of the text editor.

    QString someText() {
        static const std::array texts{QStringLiteral("a"),    QStringLiteral("\""),  QStringLiteral("1"),
                                      QStringLiteral(","),    QStringLiteral("[1]"), QStringLiteral("\n"),
                                      QStringLiteral("ñ"),    QStringLiteral("😀"),   QStringLiteral("{}"),
                                      QStringLiteral("\r\n"), QStringLiteral("]"),   QStringLiteral("\u0301")};
        return oneOf(texts);
    }
    qint64 somePlace() {
        return static_cast<qint64>(below(static_cast<std::size_t>(editing_->storage().length()) + 1));
    }
    void selectSome() {
        const qint64 anchor = somePlace();
        editing_->setSelection({anchor, oneIn(3) ? somePlace() : anchor});
    }
    void selectAll() { editing_->setSelection({0, editing_->storage().length()}); }
    TextRope selectedRope() {
        const TextRope& text = editing_->storage().text();
        const TextSelection selection = editing_->selection();
        const std::int64_t start = text.summaryBeforeUTF16(std::min(selection.anchor, selection.caret)).bytes;
        const std::int64_t stop = text.summaryBeforeUTF16(std::max(selection.anchor, selection.caret)).bytes;
        return text.slice(ByteRange::between(start, stop));
    }

    void actOnText() {
        const std::size_t choice = below(20);
        if (!oneIn(3))
            selectSome();
        if (choice < 9)
            return editing_->type(someText());
        if (choice < 12)
            return editing_->deleteSelectionOr(somePlace());
        if (choice < 13)
            return editing_->typeLineFeed();
        if (choice < 14)
            return editing_->paste(QString(static_cast<qsizetype>(below(300)), u'x'));
        if (choice < 16) {
            // A copy that shares the memory of the text.
            const TextRope copied = selectedRope();
            selectSome();
            return editing_->paste(copied);
        }
        if (choice < 17) {
            selectAll();
            return editing_->cut();
        }
        if (choice < 18)
            return makeValid();
        replaceEverywhere();
    }
    /// So that there is something to format and to show as a tree.
    void makeValid() {
        selectAll();
        editing_->paste(QStringLiteral("{\"k\": [1, {\"b\": 2, \"a\": \"x\"}], \"j\": [], \"k\": 1.0}"));
    }
    void replaceEverywhere() {
        const TextRope& text = editing_->storage().text();
        QString whole = editing_->storage().string({0, editing_->storage().length()});
        if (whole.size() > 5000)
            return selectAll(), editing_->cut();
        whole.replace(QStringLiteral("1"), QStringLiteral("10"));
        const TextRope kept = text.slice({0, text.byteCount()});
        editing_->replace({0, editing_->storage().length()},
                          oneIn(2) ? TextRope::repairing(std::u16string_view(QStringView(whole).utf16(),
                                                                             static_cast<std::size_t>(whole.size())))
                                   : kept + kept,
                          QStringLiteral("Reemplazar todo"));
    }

    // Actions of the tree editor.

    NodeID someNode() {
        const JSONTree& tree = *document_->content().tree;
        NodeID node = tree.root();
        while (!tree.children(node).empty() && !oneIn(3))
            node = tree.children(
                node)[static_cast<std::int64_t>(below(static_cast<std::size_t>(tree.children(node).size())))];
        return node;
    }
    void actOnTree() {
        TreeEditor& tree = model_->tree();
        const NodeID node = someNode();
        tree.select(node);
        switch (below(10)) {
        case 0:
        case 1:
            return tree.insert(oneIn(2));
        case 2:
            return tree.duplicate();
        case 3:
            return tree.move(static_cast<std::int64_t>(below(5)) - 2);
        case 4:
            return tree.remove();
        case 5:
            return tree.changeType(node, oneOf(allNodeKinds));
        case 6:
            QGuiApplication::clipboard()->setText(QStringLiteral("{\"p\": [1, \"dos\", {\"q\": null}], \"r\": 1e5}"));
            return tree.pasteJSON();
        case 7:
            if (document_->content().tree->isObjectMember(node))
                tree.commit(SharedText(someText().toStdString()), {node, TreeEditor::Field::key});
            return;
        default:
            if (!isContainer(document_->content().tree->kind(node)))
                tree.commit(SharedText(someText().toStdString()), {node, TreeEditor::Field::value});
            // A value that is not accepted stays open in its field.
            tree.setEditing(std::nullopt);
            return;
        }
    }

    // Actions of the window.

    void wait() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model_->isBusy(); }));
    }
    void format() {
        static constexpr std::array styles{JSONStyle::compact(), JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false),
                                           JSONStyle::pretty(JSONStyle::Indent::tab, true)};
        if (editing_ && oneIn(2))
            makeValid();
        model_->format(oneOf(styles));
        wait();
    }
    void switchMode() {
        if (editing_ && !oneIn(4))
            makeValid();
        model_->switchMode(document_->mode() == EditorMode::tree ? EditorMode::text : EditorMode::tree);
        wait();
    }

    struct Save {
        QString path;
        JSONContent snapshot;
        StateToken::Value token;
        std::function<bool(const ContentChecksum&)> willReplace;
        /// Whether the file is the new one.
        bool isReplaced = false;
    };
    void beginSave() {
        const QString path = filePath_ && !oneIn(4) ? *filePath_ : randomFile();
        if (editing_)
            editing_->endTypingStep();
        const StateToken::Value token = document_->stateToken().current();
        save_ = Save{
            .path = path, .snapshot = document_->snapshot(), .token = token, .willReplace = journal_->willSave(path)};
    }
    void goOnSaving() {
        if (save_->isReplaced)
            return endSave();
        if (oneIn(6)) {
            journal_->didNotSave();
            return save_.reset();
        }
        const SharedText contents = JSONDocument::fileContents(save_->snapshot);
        EXPECT_TRUE(save_->willReplace(ContentChecksum::of(contents.view())));
        if (oneIn(6)) {
            // The file could not be replaced in the end.
            check();
            journal_->didNotSave();
            return save_.reset();
        }
        write(save_->path, contents.view());
        save_->isReplaced = true;
    }
    void endSave() {
        filePath_ = save_->path;
        document_->configuration().setFileLocation(save_->path);
        document_->configuration().setFileState(stateOf(save_->path));
        document_->noteSaved(save_->token);
        journal_->didSave();
        save_.reset();
    }
    void readAnew() {
        const auto content = JSONContent::fromData(SharedText(read(*filePath_)));
        ASSERT_TRUE(content);
        document_->configuration().setFileState(stateOf(*filePath_));
        oneIn(2) ? document_->apply(*content) : document_->reload(*content);
    }

    /// The process ends, and the next one goes on with what comes back.
    void endAndRecover() {
        const std::string expected = bytes();
        const EditorMode mode = document_->mode();
        journal_->flush();
        save_.reset();
        end();
        std::vector<LeftBehind> found = findLeftBehind(folder());
        if (found.empty())
            return begin(filePath_ && QFile::exists(*filePath_) ? *JSONContent::fromData(SharedText(read(*filePath_)))
                                                                : JSONContent::empty());
        ASSERT_EQ(found.size(), 1U);
        auto recovered = recover(std::move(found.front()));
        ASSERT_TRUE(recovered) << recovered.error().message.toStdString();
        filePath_ = recovered->path;
        makeDocument();
        document_->configuration().setFileState(recovered->state);
        document_->applyUnsaved(std::move(recovered->content), recovered->mode);
        ASSERT_TRUE(recovered->journal);
        journal_ = std::make_unique<DocumentJournal>(*document_, folder(), *thread_, *std::move(recovered->journal),
                                                     recovered->numbers);
        ASSERT_EQ(bytes(), expected);
        ASSERT_EQ(document_->mode(), mode);
    }

    void act() {
        const std::size_t choice = choice_ = below(100);
        if (choice < 62)
            return document_->mode() == EditorMode::text ? actOnText() : actOnTree();
        if (choice < 72)
            return undoManager_->undo();
        if (choice < 78)
            return undoManager_->redo();
        if (choice < 83)
            return format();
        if (choice < 87)
            return switchMode();
        if (choice < 96)
            return save_ ? goOnSaving() : beginSave();
        if (save_)
            return;
        if (choice < 98) {
            if (filePath_ && QFile::exists(*filePath_))
                readAnew();
            return;
        }
        endAndRecover();
    }

    /// Were the process to end now, what would come back?
    void check() {
        journal_->flush();
        const QString copy = path(QStringLiteral("copia"));
        QDir(copy).removeRecursively();
        QDir(home_.path()).mkdir(QStringLiteral("copia"));
        for (const QString& name : QDir(folder()).entryList(QDir::Files))
            QFile::copy(folder() + u'/' + name, copy + u'/' + name);
        std::vector<LeftBehind> found = findLeftBehind(copy);
        if (found.empty()) {
            // Nothing is needed, but for a file that holds it all.
            if (document_->isModified()) {
                ASSERT_TRUE(save_ && save_->isReplaced) << "changes are lost";
                ASSERT_EQ(read(save_->path), bytes());
            }
            return;
        }
        ASSERT_EQ(found.size(), 1U);
        ASSERT_TRUE(document_->isModified() || save_) << "changes come back that there are not";
        auto recovered = recover(std::move(found.front()));
        ASSERT_TRUE(recovered) << recovered.error().message.toStdString();
        ASSERT_FALSE(recovered->isPartial);
        ASSERT_EQ(std::string(JSONDocument::fileContents(recovered->content).view()), bytes());
        ASSERT_EQ(recovered->mode, document_->mode());
        if (!save_) {
            ASSERT_EQ(recovered->path, filePath_);
        }
        ++recoveredCounts_[document_->mode() == EditorMode::tree ? 0 : 1];
    }

    std::mt19937 random_{GetParam()};
    TemporaryPreferences preferences_;
    QTemporaryDir home_;
    std::optional<QString> filePath_;
    std::unique_ptr<JournalThread> thread_;
    std::shared_ptr<JSONDocument> document_;
    std::unique_ptr<DocumentJournal> journal_;
    std::unique_ptr<UndoManager> undoManager_;
    std::unique_ptr<EditorModel> model_;
    std::unique_ptr<TextEditing> editing_;
    std::optional<Save> save_;
    /// Which action was the last.
    std::size_t choice_ = 0;
    /// How often a tree came back, and a text.
    std::array<int, 2> recoveredCounts_{};
};

TEST_P(RecoveredDocuments, AreWhatTheDocumentHeld) {
    const int actions = actionCount();
    for (int action = 0; action < actions; ++action) {
        ASSERT_NO_FATAL_FAILURE(act()) << "action " << action << ", " << choice_;
        if (action % 10 == 0)
            QCoreApplication::processEvents();
        if (oneIn(4)) {
            ASSERT_NO_FATAL_FAILURE(check()) << "after action " << action << ", " << choice_;
        }
    }
    ASSERT_NO_FATAL_FAILURE(check());
    EXPECT_GT(recoveredCounts_[0], 0);
    EXPECT_GT(recoveredCounts_[1], 0);
    EXPECT_GT(recoveredCounts_[0] + recoveredCounts_[1], actions / 10);
    RecordProperty("trees", recoveredCounts_[0]);
    RecordProperty("texts", recoveredCounts_[1]);
}

INSTANTIATE_TEST_SUITE_P(Sessions, RecoveredDocuments, testing::Range(1U, 9U));

} // namespace
} // namespace quelm
