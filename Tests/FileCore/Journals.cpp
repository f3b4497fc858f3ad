#include "Tests/FileCore/Journals.h"

#include "FileCore/JournalFormat.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <span>

namespace quelm::test::journals {

std::vector<std::string> payloads() {
    std::vector<std::string> all{"first", "", "x", std::string(40, '\0'), "Añadido: «1»", std::string(700, 'a')};
    all.push_back(std::string(300, '\0') + "in the middle" + std::string(900, '\0'));
    for (int i = 0; i < 6; ++i)
        all.push_back("record " + std::to_string(i) + std::string(static_cast<std::size_t>(i) * 37, '.'));
    all.push_back(std::string(70'000, 'z'));
    all.emplace_back("last");
    return all;
}

std::string bytesOf(const std::vector<std::string>& records) {
    constexpr std::uint64_t identity = 0x1234'5678'9abc'def0;
    std::string bytes = journalformat::head(identity);
    std::uint64_t number = 0;
    for (const std::string& record : records)
        bytes += journalformat::recordHead(identity, number++, record) + record;
    return bytes;
}

std::vector<std::string> recordsOf(const JournalContents& contents) {
    std::vector<std::string> records;
    for (const SharedText& record : contents.records)
        records.emplace_back(record.view());
    return records;
}

std::vector<std::string> recordsIn(std::string_view bytes) {
    return recordsOf(JournalContents::read(SharedText(bytes)));
}

bool isPrefix(const std::vector<std::string>& begin, const std::vector<std::string>& whole) {
    return begin.size() <= whole.size() && std::ranges::equal(begin, std::span(whole).first(begin.size()));
}

std::string fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeJournal(const std::string& path, const std::vector<std::string>& records, SystemCalls& calls,
                  Progress& progress) {
    auto journal = JournalFile::create(path, calls);
    if (!journal)
        return;
    progress.isCreated = true;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!journal->append(records[i]))
            return;
        progress.appended = i + 1;
        if (i % 3 != 2 && i + 1 != records.size())
            continue;
        if (!journal->synchronize())
            return;
        progress.synchronized = i + 1;
    }
}

} // namespace quelm::test::journals
