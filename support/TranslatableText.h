#pragma once

/// A text of the user interface: its key in the language tables, and what is shown if the current table lacks
/// the key. Both are UTF-8 literals with static storage.
struct TranslatableText
{
    const char *key;
    const char *fallback;
};
