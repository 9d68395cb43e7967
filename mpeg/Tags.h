#pragma once

#include "mpeg/Tag.h"

#include <array>
#include <memory>
#include <vector>

/// The tags at both ends of a file, and with them where its audio begins and ends.
class CTags {
public:
    /// A tag class's FindTag: stream, appended, begin offset, end offset.
    using Finder = CTag* (*)(CMPAStream*, bool, long long, long long);

    /// Finds all tags. Throws CMPAException when a tag is damaged, reaches beyond the file, or when
    /// the file is too short to look for tags in.
    explicit CTags(CMPAStream* stream);
    CTags(const CTags&) = delete;
    CTags& operator=(const CTags&) = delete;
    ~CTags();

    /// The tag at the index, which is then increased by one; null past the last one. Appended tags
    /// come first, from the end of the file backwards, then the leading ones from its start on.
    CTag* GetNextTag(unsigned int& index) const;

    /// Runs one finder and records its tag. Throws like the constructor.
    [[nodiscard]] bool FindTag(Finder finder, CMPAStream* stream, bool appended);

    /// Tries each finder of a list once and stops at the first that finds a tag. Throw like the
    /// constructor.
    [[nodiscard]] bool FindAppendedTag(CMPAStream* stream);
    [[nodiscard]] bool FindPrependedTag(CMPAStream* stream);

    long long GetBeginOffset() const { return m_beginOffset; } ///< first byte after leading tags
    long long GetEndOffset() const { return m_endOffset; }     ///< first byte of trailing tags

    static const std::array<Finder, 5> m_appendedTagFactories;
    static const std::array<Finder, 2> m_prependedTagFactories;

private:
    std::vector<std::unique_ptr<CTag>> m_tags;
    long long m_beginOffset = 0;
    long long m_endOffset;
};
