#include "tools/zenro/store/feature_code.h"

#include <cstring>

namespace zm::tool {
namespace {

template <class T>
void Put(std::string& bytes, T value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void PutSize(std::string& bytes, std::size_t size) {
    Put(bytes, static_cast<std::uint32_t>(size));
}

void PutText(std::string& bytes, const std::string& text) {
    PutSize(bytes, text.size());
    bytes += text;
}

void PutNumbers(std::string& bytes, const std::vector<double>& numbers) {
    bytes.append(reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(double));
}

// Reads what Put wrote; memcpy, since nothing in the bytes is aligned.
class Reader {
 public:
    explicit Reader(const char* at) : m_at(at) {}
    template <class T>
    T Take() {
        T value;
        std::memcpy(&value, m_at, sizeof value);
        m_at += sizeof value;
        return value;
    }
    std::size_t TakeSize() { return Take<std::uint32_t>(); }
    void TakeText(std::string& text) {
        const std::size_t size = TakeSize();
        text.assign(m_at, size);
        m_at += size;
    }
    void TakeNumbers(std::vector<double>& numbers, std::size_t count) {
        numbers.resize(count);
        if (count > 0) std::memcpy(numbers.data(), m_at, count * sizeof(double));
        m_at += count * sizeof(double);
    }

 private:
    const char* m_at;
};

}  // namespace

void Encode(const Feature& feature, const std::vector<Rule>& rules, std::string& bytes) {
    PutSize(bytes, feature.shapes.size());
    for (const Shape& shape : feature.shapes) {
        Put(bytes, static_cast<std::uint8_t>(shape.kind));
        PutSize(bytes, shape.chains.size());
        for (const Chain& chain : shape.chains) {
            PutSize(bytes, chain.size());
            PutNumbers(bytes, chain.x);
            PutNumbers(bytes, chain.y);
        }
    }
    PutSize(bytes, feature.uses.size());
    for (const Use& use : feature.uses) {
        PutSize(bytes, static_cast<std::size_t>(use.rule - rules.data()));
        PutText(bytes, use.label);
        PutText(bytes, use.under);
        Put(bytes, use.angle);
        Put(bytes, use.height);
        Put(bytes, static_cast<std::uint8_t>(use.hasHeight));
        Put(bytes, use.roadWidth);
        PutText(bytes, use.slope);
        Put(bytes, static_cast<std::int32_t>(use.storey));
    }
}

void Decode(const char* bytes, const std::vector<Rule>& rules, Feature& feature) {
    Reader from(bytes);
    feature.shapes.resize(from.TakeSize());
    for (Shape& shape : feature.shapes) {
        shape.kind = static_cast<GeometryKind>(from.Take<std::uint8_t>());
        shape.chains.resize(from.TakeSize());
        for (Chain& chain : shape.chains) {
            const std::size_t count = from.TakeSize();
            from.TakeNumbers(chain.x, count);
            from.TakeNumbers(chain.y, count);
        }
    }
    feature.uses.resize(from.TakeSize());
    for (Use& use : feature.uses) {
        use.rule = &rules[from.TakeSize()];
        from.TakeText(use.label);
        from.TakeText(use.under);
        use.angle = from.Take<double>();
        use.height = from.Take<double>();
        use.hasHeight = from.Take<std::uint8_t>() != 0;
        use.roadWidth = from.Take<double>();
        from.TakeText(use.slope);
        use.storey = from.Take<std::int32_t>();
    }
}

}  // namespace zm::tool
