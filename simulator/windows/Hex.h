#pragma once

#include <string>
#include <vector>

/// Returns the bytes as two hexadecimal digits each.
inline std::string hexOf(const unsigned char *bytes, std::size_t count)
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * count);
    for (std::size_t at = 0; at < count; ++at) {
        text += digits[bytes[at] >> 4];
        text += digits[bytes[at] & 15];
    }
    return text;
}

/// Converts pairs of hexadecimal digits to bytes, up to the first text that is not such a pair.
inline std::vector<unsigned char> bytesOf(const std::string &hex)
{
    const auto value = [](char digit) {
        const std::size_t found = std::string("0123456789abcdef").find(digit);
        return found == std::string::npos ? -1 : static_cast<int>(found);
    };
    std::vector<unsigned char> bytes;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2) {
        const int high = value(hex[at]);
        const int low = value(hex[at + 1]);
        if (high < 0 || low < 0)
            break;
        bytes.push_back(static_cast<unsigned char>(high * 16 + low));
    }
    return bytes;
}
