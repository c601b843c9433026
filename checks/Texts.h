#pragma once

#include <QString>

/// Texts for the user that are not in the language tables, in the current language.
namespace Texts {

enum class Language { English, Chinese };

/// Sets the language; English until then. Call it before other threads pick texts.
void setLanguage(Language language);
/// Returns Chinese if the system's country is China and English otherwise, like the window program.
Language languageOfSystem();

/// Returns the text in the current language. Both are UTF-8 literals.
QString pick(const char *english, const char *chinese);

} // namespace Texts
