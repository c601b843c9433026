#pragma once

#include <QString>

/// The language in which the program speaks to a person.
namespace Texts {

enum class Language { English, Chinese };

/// Sets the language; English until then. Call it before other threads pick texts.
void setLanguage(Language language);
/// Returns Chinese where the system's country is China, else English, as the window program does.
Language languageOfSystem();

/// Returns the text in the current language. Both are UTF-8 literals.
QString pick(const char *english, const char *chinese);

} // namespace Texts
