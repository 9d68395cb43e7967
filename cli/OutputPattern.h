#pragma once

#include <string>
#include <vector>

/// Names the pieces of a split: "part-%.mp3", "part-%03d.mp3", "{title}.mp3".
///
/// The last % becomes the piece's number from 1, with leading zeros to the width of the largest;
/// a digit behind it, as in %3 or %03d, sets another width. {title} becomes the piece's title, its
/// number where it has none.
class OutputPattern {
public:
    /// Throws UsageError for a pattern that names every piece alike.
    explicit OutputPattern(const std::string& pattern);

    /// The paths of all pieces. Throws UsageError when two come to the same one.
    /// @param titles  UTF-8, one for each piece, empty where it has none
    std::vector<std::string> Names(const std::vector<std::string>& titles) const;

private:
    std::string Number(std::size_t index, std::size_t count) const;
    std::string Name(const std::string& number, const std::string& title) const;

    std::string m_before; // the number's place
    std::string m_behind;
    bool m_hasNumber = false;
    std::size_t m_width = 0; // of the number; 0: that of the largest
};

/// A title as a part of a file name: what cannot stand in one becomes '_'.
std::string FileNamePart(const std::string& title);
