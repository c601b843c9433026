#pragma once

#include "app/MainWindowLayout.h"

/// The contents of the flashing page.
namespace MainWindowPage {

/// Makes them, and their layout becomes the page's.
void buildContents(QWidget *mainWidget, const MainWindowLayout::Callbacks &callbacks,
                   MainWindowWidgets &widgets);

} // namespace MainWindowPage
