#include "Support/Mutations.h"

#include <algorithm>
#include <memory>
#include <random>

namespace Marvane::FrameSift {

namespace {

class CMutator
{
public:
    explicit CMutator(uint32_t nSeed) : m_random(nSeed) {}

    size_t Below(size_t nEnd) { return nEnd == 0 ? 0 : m_random() % nEnd; }

    void DamageOnce(Bytes& bytes)
    {
        const size_t nAt = Below(bytes.size());
        const size_t nRun = bytes.empty() ? 0 : 1 + Below(std::min<size_t>(16, bytes.size() - nAt));
        const auto first = bytes.begin() + static_cast<ptrdiff_t>(nAt);
        const auto last = first + static_cast<ptrdiff_t>(nRun);
        switch (Below(7)) {
        case 0:
            bytes.resize(nAt);
            break;
        case 1:
            bytes.erase(first, last);
            break;
        case 2: {
            const Bytes copy(first, last);
            bytes.insert(first, copy.begin(), copy.end());
            break;
        }
        case 3:
            std::fill(first, last, Below(2) == 0 ? uint8_t{0} : uint8_t{0xFF});
            break;
        case 4:
            std::generate(first, last, [this] { return static_cast<uint8_t>(m_random()); });
            break;
        default: // a flipped bit most often: it reaches deepest
            if (!bytes.empty())
                *first = static_cast<uint8_t>(*first ^ 1U << Below(8));
        }
    }

private:
    std::mt19937 m_random;
};

} // namespace

void ForEachMutation(const std::vector<Bytes>& seeds, size_t nCount, uint32_t nRandomSeed,
                     const std::function<void(std::span<uint8_t>)>& take)
{
    CMutator mutator(nRandomSeed);
    for (size_t n = 0; n < nCount; ++n) {
        Bytes bytes = seeds[mutator.Below(seeds.size())];
        for (size_t nDamage = 1 + mutator.Below(4); nDamage > 0; --nDamage)
            mutator.DamageOnce(bytes);
        const auto pBlock = std::make_unique<uint8_t[]>(bytes.size());
        std::copy(bytes.begin(), bytes.end(), pBlock.get());
        take({pBlock.get(), bytes.size()});
    }
}

} // namespace Marvane::FrameSift
