#pragma once

/// A text of the user interface as the sources name it: the English text is the key into the
/// language tables, the Chinese text is shown where the current table lacks the key. Both are
/// UTF-8 literals with static storage.
struct BilingualText
{
    const char *english;
    const char *chinese;
};
