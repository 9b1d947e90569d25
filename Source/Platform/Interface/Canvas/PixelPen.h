// One colour, and what it does to pixels that it covers in part: two at a time, in vector lanes and
// without branches, for nobody can foresee which way they would go. A plain value, in a header so
// that the loops that draw hold it in registers.
//
// A pixel that is covered in part remembers by which colour, and how much, in the byte that would
// be its alpha. Drawing that colour again adds only what is not covered yet, so that the pieces of
// a trail, and the rounds of an orbit, cannot be told from a single line.
#pragma once

#include <algorithm>
#include <bit>

#include "Platform/Interface/Canvas/PixelBuffer.h"

class PixelPen {
public:
    // How much of a pixel is covered, in levels from 0 to kAll.
    static constexpr int32 kLevelBits = 5;
    static constexpr uint32 kAll = 1u << kLevelBits;

    explicit PixelPen(Pixel color)
        : full_(color | kOpaque),
          tag_(TagOf(color)),
          color_(Spread((color & ~kOpaque) | tag_ << kMarkShift,
                        (color & ~kOpaque) | tag_ << kMarkShift)) {}

    // Two different pixels.
    void Cover(Pixel* first, uint32 firstLevel, Pixel* second, uint32 secondLevel) const {
        const Lanes before = Spread(*first, *second);
        const Lanes color = color_ | Join(kTable.marks[firstLevel], kTable.marks[secondLevel]);
        const Lanes share = Join(ShareOf(*first, firstLevel), ShareOf(*second, secondLevel));
        const Lanes after = ((before << 8) + (color - before) * share) >> 8;
        const auto both = std::bit_cast<uint64>(__builtin_convertvector(after, HalfBytes));
        *first = static_cast<Pixel>(both);
        *second = static_cast<Pixel>(both >> 32);
    }
    void Cover(Pixel* pixel, uint32 level) const {
        Pixel none = 0;
        Cover(pixel, level, &none, 0);
    }
    // The pixel when all of it is covered.
    [[nodiscard]] Pixel Full() const { return full_; }

private:
    using HalfBytes [[gnu::vector_size(8)]] = uint8;
    using Bytes [[gnu::vector_size(16)]] = uint8;
    using Pixels [[gnu::vector_size(16)]] = Pixel;
    // Blue, green, red and mark of two pixels.
    using Lanes [[gnu::vector_size(16)]] = uint16;
    using Halves [[gnu::vector_size(16)]] = uint64;

    // A pixel's highest byte: three bits that stand for a colour, and a level below kAll. A pixel
    // without such a mark has 255 there, as opaque pixels do; so level 31 of the last of the eight
    // colours would be no mark, and kAll - 1 is drawn as kAll. Two colours that share their three
    // bits are told apart only where both cover a pixel in part; nobody sees that.
    static constexpr int32 kMarkShift = 24;
    static constexpr uint32 kNoMark = 0xff;
    static constexpr uint32 kTagMask = kNoMark & ~(kAll - 1);
    // No pixel is covered so much by a colour and remembers it.
    static constexpr uint32 kUncovered = kAll - 1;

    struct Table {
        // What a pixel covered so much takes on of the colour until `level` of it is covered: of
        // 256, in each lane; the mark is taken on wholly, or not at all.
        uint64 shares[kAll][kAll + 1] = {};
        // The level's bits in the mark's lane.
        uint64 marks[kAll + 1] = {};

        constexpr Table() {
            for (uint32 level = 0; level <= kAll; level++) {
                const uint32 wanted = level == kAll - 1 ? kAll : level;
                marks[level] = uint64{wanted == kAll ? kNoMark : wanted} << 48;
                for (uint32 covered = 0; covered < kAll; covered++) {
                    const uint32 is = covered == kUncovered ? 0 : covered;
                    if (wanted <= is) continue;
                    const uint64 share = 256 * (wanted - is) / (kAll - is);
                    shares[covered][level] = uint64{256} << 48 | share * 0x100010001u;
                }
            }
        }
    };
    static const Table kTable;

    static constexpr uint32 TagOf(Pixel color) {
        // Any mixture of the colour's bits.
        const uint32 hash = (color & ~kOpaque) * 0x9e3779b1u;
        return hash >> 24 & kTagMask;
    }
    static Lanes Spread(Pixel first, Pixel second) {
        const auto bytes = std::bit_cast<Bytes>(Pixels{first, second, 0, 0});
        return std::bit_cast<Lanes>(__builtin_shufflevector(bytes, Bytes{}, 0, 16, 1, 17, 2, 18, 3,
                                                            19, 4, 20, 5, 21, 6, 22, 7, 23));
    }
    static Lanes Join(uint64 first, uint64 second) {
        return std::bit_cast<Lanes>(Halves{first, second});
    }
    [[nodiscard]] uint64 ShareOf(Pixel before, uint32 level) const {
        return kTable.shares[std::min(before >> kMarkShift ^ tag_, kUncovered)][level];
    }

    Pixel full_;
    uint32 tag_;
    Lanes color_;
};

inline constexpr PixelPen::Table PixelPen::kTable;
