#include "Benchmarks/Generator/Digits.h"
#include "Benchmarks/Generator/Items.h"

#include <string>

namespace quelm::bench::items {

namespace {

/// Opens and closes containers one level at a time. Objects and arrays alternate at random, so it must
/// remember which of them is open to put keys where they belong.
class Walk {
public:
    Walk(JSONEmitter& out, Random& random) : out_(out), random_(random) { open(); }

    std::size_t depth() const { return objects_.size(); }

    void open() {
        if (!objects_.empty())
            nameNext();
        const bool isObject = random_.chance(50);
        objects_.push_back(isObject);
        if (isObject)
            out_.beginObject();
        else
            out_.beginArray();
        scalar();
    }

    void close() {
        objects_.pop_back();
        out_.end();
    }

    void scalar() {
        nameNext();
        text_.clear();
        appendDecimal(text_, random_.below(100'000));
        out_.literal(text_);
    }

private:
    void nameNext() {
        if (!objects_.back())
            return;
        text_ = "k";
        appendDecimal(text_, names_++);
        out_.key(text_);
    }

    JSONEmitter& out_;
    Random& random_;
    std::string text_;
    std::vector<bool> objects_;
    std::uint32_t names_ = 0;
};

} // namespace

void deepNesting(JSONEmitter& out, std::uint64_t size, Random& random) {
    Walk walk(out, random);
    const std::size_t outside = out.depth() - 1;
    const auto isComplete = [&] { return out.sizeIfClosed() >= size; };
    const auto deepest = static_cast<std::uint32_t>(deepestLevel - outside);
    while (!isComplete()) {
        const std::size_t bottom = random.between(300, deepest);
        while (walk.depth() < bottom && !isComplete())
            walk.open();
        const std::size_t top = random.between(1, 200);
        while (walk.depth() > top && !isComplete()) {
            walk.close();
            walk.scalar();
        }
    }
    while (walk.depth() > 0)
        walk.close();
}

} // namespace quelm::bench::items
