#pragma once

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

namespace quelm {

inline JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

/// A document with an undo manager as its window has one, edited as a text editor would.
class EditedDocumentTest : public testing::Test {
protected:
    EditedDocumentTest() { manager.setStateToken(&document.stateToken()); }

    /// The document as text, with the text buffer that a text editor would attach.
    TextStorage& edit(std::string_view text) {
        Preferences::setInitialMode(Preferences::InitialMode::text);
        document.apply(contentOf(text));
        document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
        return *document.textBuffer();
    }
    /// Appends to the text buffer as a user would, with no step.
    void type(const QString& text) {
        document.textBuffer()->replaceCharacters({document.textBuffer()->length(), 0}, text);
        document.noteTextBufferEdited();
    }
    /// The same with a step.
    void typeStep(const QString& text) {
        const TextRope before = document.textBuffer()->text();
        type(text);
        registerRestoring(before);
    }
    void registerRestoring(const TextRope& text) {
        manager.registerUndo<TextStorage>(document.textBuffer().get(), [this, text](TextStorage& storage) {
            const TextRope before = storage.text();
            storage.replaceCharacters({0, storage.length()}, text);
            document.noteTextBufferEdited();
            registerRestoring(before);
        });
    }

    std::string bufferText() const { return textOf(document.textBuffer()->text()); }
    std::string contentText() const { return textOf(*document.content().text); }
    std::string savedText() { return std::string(JSONDocument::fileContents(document.snapshot()).view()); }
    static std::string textOf(const TextRope& text) { return std::string(text.contiguous().view()); }

    TemporaryPreferences preferences;
    JSONDocument document;
    UndoManager manager;
};

} // namespace quelm
