#include "Fuzzing/Seeds.h"

#include "FileCore/BackupFormat.h"
#include "FileCore/JournalFormat.h"
#include "Fuzzing/JournalTarget.h"
#include "Fuzzing/OpeningTarget.h"
#include "Quelm/Recovery/JournalRecord.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>

namespace quelm::fuzzing {

namespace {

constexpr std::string_view fileBytes = R"({"a": 1, "b": [true, null, "x"], "c": {"d": "ñ"}})";

using namespace journal;

std::vector<std::string> encoded(std::initializer_list<Record> records) {
    std::vector<std::string> payloads;
    for (const Record& record : records)
        payloads.push_back(encode(record));
    return payloads;
}

Base base(EditorMode mode) {
    Base base;
    base.path = "/datos/a.json";
    base.checksum = ContentChecksum::of(fileBytes);
    base.mode = mode;
    return base;
}

TextSource given(std::string_view bytes) {
    TextSource source;
    source.bytes = SharedText(bytes);
    return source;
}

TextSource copied(TextSource::Origin origin, std::int64_t location, std::int64_t length) {
    TextSource source;
    source.origin = origin;
    source.location = location;
    source.length = length;
    return source;
}

std::vector<std::string> textRecords() {
    return encoded(
        {base(EditorMode::text), EditText{6, 1, {given("42")}}, Modified{true},
         EditText{
             0, 10, {copied(TextSource::Origin::removed, 0, 5), given("ñ"), copied(TextSource::Origin::file, 3, 4)}},
         Modified{false}});
}

std::vector<std::string> treeRecords() {
    return encoded({base(EditorMode::tree), EditTree{{SetKey{{0, 0}, SharedText("key")}}}, Modified{true},
                    EditTree{{SetValue{{0, 1, 2}, NodeKind::string, SharedText("value")},
                              InsertNew{{0}, 1, SharedText("new"), SharedText(R"([1,{"x":2}])")}}},
                    EditTree{{Remove{{0, 2}, 1}, InsertDetached{{0}, 0, 1}}}});
}

std::vector<std::string> contentRecords() {
    Replace replace{0, 2, JSONStyle::compact(), true, true, false, {given("[1, 2]")}};
    return encoded({base(EditorMode::text), Reformat{0, 1, JSONStyle::pretty(JSONStyle::Indent::tab, true)},
                    Modified{true}, Return{1, 0}, ChangeMode{EditorMode::tree}, ChangeMode{EditorMode::text}, replace});
}

std::vector<std::string> savedRecords() {
    Base second = base(EditorMode::text);
    second.recordsSince = 1;
    return encoded({base(EditorMode::text), EditText{6, 1, {given("2")}}, Modified{true}, second, SaveOutcome{true},
                    EditText{1, 0, {given(" ")}}, base(EditorMode::text), SaveOutcome{false}});
}

std::vector<std::string> newDocumentRecords() {
    return encoded({Base{}, EditTree{{InsertNew{{0}, 0, SharedText("k"), SharedText("\"v\"")}}}, Modified{true}});
}

std::string journalOf(const std::vector<std::string>& payloads) {
    constexpr std::uint64_t identity = 7;
    std::string bytes = journalformat::head(identity);
    std::uint64_t number = 0;
    for (const std::string& payload : payloads)
        bytes += journalformat::recordHead(identity, number++, payload) + payload;
    return bytes;
}

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

std::vector<std::string> journalSeeds() {
    std::vector<std::string> seeds;
    for (const auto& payloads :
         {textRecords(), treeRecords(), contentRecords(), savedRecords(), newDocumentRecords()}) {
        const std::string whole = journalOf(payloads);
        seeds.push_back(recordsInput(fileBytes, payloads));
        seeds.push_back(journalInput(whole));
        seeds.push_back(journalInput(whole.substr(0, whole.size() - 1)));
        seeds.push_back(journalInput(whole + std::string(600, '\0')));
    }
    const std::string head = backupFormat::head("/datos/a.json", fileBytes.size());
    const backupFormat::Checksums checksums{ContentChecksum::of(fileBytes), ContentChecksum::of("[]")};
    seeds.push_back(backupInput(head + std::string(fileBytes) + backupFormat::tail(head, checksums)));
    return seeds;
}

std::vector<std::string> openingSeeds(const std::string& folder) {
    std::vector<std::string> files{"",
                                   "{}",
                                   "[]",
                                   "\"\"",
                                   "-0.0e+00",
                                   "tru",
                                   "[1,]",
                                   "{\"a\":1,}",
                                   "\xef\xbb\xbf"
                                   "1",
                                   "\xff",
                                   "\"\\ud800\"",
                                   "[[[[[[",
                                   "{\"a\":1,\"a\":2}\r\n",
                                   "\"\\u00f1\\n\"",
                                   " \t\r\n"};
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(contentsOf(entry.path()));
    // The order of a folder is not always the same.
    std::ranges::sort(files);
    std::vector<std::string> seeds;
    for (const std::string& each : files) {
        for (unsigned char style = 0; style < 4; ++style)
            seeds.push_back(openingInput(style, each));
    }
    return seeds;
}

} // namespace quelm::fuzzing
