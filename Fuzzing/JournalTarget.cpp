#include "Fuzzing/JournalTarget.h"

#include "FileCore/BackupFormat.h"
#include "FileCore/JournalContents.h"
#include "FileCore/JournalFormat.h"
#include "Fuzzing/ContentCheck.h"
#include "Quelm/Recovery/JournalReplay.h"
#include "Quelm/Recovery/JournalSummary.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace quelm::fuzzing {

namespace {

// No text of a record that was made up may take more time than is given to one input.
constexpr ReplayLimits limits{.longestText = std::int64_t{1} << 18, .work = std::int64_t{1} << 22};
constexpr std::size_t longestChunk = 0xffff;

std::string formByte(JournalForm form) {
    return std::string(1, static_cast<char>(form));
}

std::string chunk(std::string_view bytes) {
    require(bytes.size() <= longestChunk, "a chunk is short");
    return std::string{static_cast<char>(bytes.size() & 0xff), static_cast<char>(bytes.size() >> 8)} +
           std::string(bytes);
}

std::vector<std::string_view> chunksOf(std::string_view bytes) {
    std::vector<std::string_view> chunks;
    while (bytes.size() >= 2) {
        const std::size_t length = static_cast<unsigned char>(bytes[0]) + 256U * static_cast<unsigned char>(bytes[1]);
        bytes.remove_prefix(2);
        chunks.push_back(bytes.substr(0, length));
        bytes.remove_prefix(std::min(length, bytes.size()));
    }
    return chunks;
}

std::size_t replay(const JournalContents& contents, const JournalSummary& summary, const JournalSummary::Start& start,
            const SharedText& file) {
    auto replay = JournalReplay::start(start.base, start.base.checksum ? file : SharedText(),
                                       summary.returnsSince(start), {}, limits);
    if (!replay)
        return 0;
    std::size_t repeated = 0;
    for (std::size_t i = start.record; i < summary.recordCount; ++i) {
        const auto record = journal::decode(contents.records[i]);
        require(record.has_value(), "a record that counts is understood");
        if (!replay->apply(*record))
            break;
        ++repeated;
    }
    const EditorMode mode = replay->mode();
    const auto content = std::move(*replay).content();
    if (!content)
        return repeated;
    require(mode == EditorMode::text ? content->text.has_value() : content->tree.has_value(),
            "what was recovered can be shown");
    checkContent(*content);
    return repeated;
}

std::size_t feedContents(const JournalContents& contents, const SharedText& file) {
    for (const SharedText& bytes : contents.records) {
        if (const auto record = journal::decode(bytes))
            require(journal::encode(*record) == bytes.view(), "a record has one encoding");
    }
    const JournalSummary summary = JournalSummary::of(contents);
    require(summary.recordCount <= contents.records.size(), "only records that are there count");
    std::size_t repeated = 0;
    for (const JournalSummary::Start& start : summary.starts)
        repeated += replay(contents, summary, start, file);
    return repeated;
}

std::size_t feedFile(std::string_view bytes) {
    const JournalContents contents = JournalContents::read(SharedText(bytes));
    require(contents.validSize <= static_cast<std::int64_t>(bytes.size()), "what is valid is there");
    if (contents.end == JournalContents::End::unknown)
        return 0;
    // What is valid can be gone on with: cut there, it is the same and whole.
    const auto valid = JournalContents::read(SharedText(bytes.substr(0, static_cast<std::size_t>(contents.validSize))));
    require(valid.records.size() == contents.records.size(), "cutting off the end keeps the records");
    require(contents.validSize == 0 || valid.end == JournalContents::End::whole, "cutting off the end leaves none");
    return feedContents(contents, SharedText());
}

std::size_t feedRecords(std::string_view bytes) {
    const std::vector<std::string_view> chunks = chunksOf(bytes);
    if (chunks.empty())
        return 0;
    constexpr std::uint64_t identity = 1;
    std::string journal = journalformat::head(identity);
    for (std::size_t i = 1; i < chunks.size(); ++i)
        journal.append(journalformat::recordHead(identity, i - 1, chunks[i])).append(chunks[i]);
    const JournalContents contents = JournalContents::read(SharedText(journal));
    require(contents.end == JournalContents::End::whole, "a journal that was written is whole");
    require(std::ranges::equal(contents.records, std::span(chunks).subspan(1), {}, &SharedText::view),
            "what was written is read");
    return feedContents(contents, SharedText(chunks.front()));
}

void feedBackup(std::string_view bytes) {
    const auto lengths = backupFormat::lengths(bytes.substr(0, backupFormat::fixedHeadSize));
    if (!lengths || lengths->backup() != static_cast<std::int64_t>(bytes.size()))
        return;
    backupFormat::checksums(bytes.substr(0, lengths->head()), bytes.substr(bytes.size() - backupFormat::tailSize));
}

} // namespace

std::size_t feedJournal(std::string_view input) {
    if (input.empty())
        return 0;
    const auto form = static_cast<JournalForm>(static_cast<unsigned char>(input.front()) % 3);
    input.remove_prefix(1);
    switch (form) {
    case JournalForm::file:
        return feedFile(input);
    case JournalForm::records:
        return feedRecords(input);
    case JournalForm::backup:
        feedBackup(input);
        return 0;
    }
    return 0;
}

std::string journalInput(std::string_view journal) {
    return formByte(JournalForm::file) + std::string(journal);
}

std::string recordsInput(std::string_view file, const std::vector<std::string>& payloads) {
    std::string input = formByte(JournalForm::records) + chunk(file);
    for (const std::string& payload : payloads)
        input += chunk(payload);
    return input;
}

std::string backupInput(std::string_view backup) {
    return formByte(JournalForm::backup) + std::string(backup);
}

} // namespace quelm::fuzzing
