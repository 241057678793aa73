#pragma once

// Texts that are put together while compiling.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvane::binding {

/// A string as a template argument.
template <std::size_t size> struct Text {
    consteval Text(const char (&source)[size])
    {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = source[i];
    }
    char text[size];
    static constexpr std::size_t length = size - 1;
};

namespace detail {

/// The longest number: a sign and 19 digits.
inline constexpr std::size_t numberWidth = 20;

template <Text pattern, std::int64_t... numbers> consteval auto Filled()
{
    static_assert(std::count(pattern.text, pattern.text + pattern.length, '#') ==
                  sizeof...(numbers));
    std::array<char, pattern.length + sizeof...(numbers) * numberWidth + 1> result{};
    const std::array<std::int64_t, sizeof...(numbers)> values{numbers...};
    std::size_t length = 0;
    std::size_t next = 0;
    for (std::size_t i = 0; i < pattern.length; ++i) {
        if (pattern.text[i] != '#') {
            result[length++] = pattern.text[i];
            continue;
        }
        std::int64_t value = values[next++];
        if (value < 0) {
            result[length++] = '-';
            value = -value;
        }
        std::size_t digits = 1;
        for (std::int64_t rest = value; rest >= 10; rest /= 10)
            ++digits;
        for (std::size_t digit = digits; digit-- > 0; value /= 10)
            result[length + digit] = static_cast<char>('0' + value % 10);
        length += digits;
    }
    return result;
}

template <Text pattern, std::int64_t... numbers>
inline constexpr auto filled = Filled<pattern, numbers...>();

} // namespace detail

/// The pattern with the numbers, in order, in place of each '#': a limit stands in a text as the
/// constant that it is.
template <Text pattern, std::int64_t... numbers>
inline constexpr std::string_view filledIn = detail::filled<pattern, numbers...>.data();

} // namespace orvane::binding
