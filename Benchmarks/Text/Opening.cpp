#include "Benchmarks/Harness/ProcessMemory.h"
#include "Benchmarks/Harness/Report.h"
#include "Benchmarks/Harness/Timing.h"
#include "Benchmarks/Text/TextBenchmarks.h"

namespace quelm::bench {

void measureOpening(const TextSubject& subject) {
    Samples samples;
    for (int round = 0; round < 5; ++round) {
        const auto editor = makeQuelmEditor();
        samples.add(secondsOf([&] {
            editor->setText(TextRope(subject.text));
            editor->show();
        }));
    }
    report::latency("text/open/" + subject.name, samples);

    processmemory::returnFreeMemory();
    const auto before = processmemory::residentBytes();
    const auto editor = makeQuelmEditor();
    editor->setText(TextRope(subject.text));
    editor->show();
    const auto after = processmemory::residentBytes();
    if (before && after)
        report::memory("text/engine/" + subject.name,
                       100.0 * static_cast<double>(*after - *before) / static_cast<double>(subject.text.size()),
                       "% of the text, beside it");
}

} // namespace quelm::bench
