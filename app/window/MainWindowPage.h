#pragma once

#include "app/window/MainWindowLayout.h"

/// The contents of the flashing page.
namespace MainWindowPage {

/// Makes the page's widgets and sets the page's layout.
void buildContents(QWidget *mainWidget, const MainWindowLayout::Callbacks &callbacks,
                   MainWindowWidgets &widgets);

} // namespace MainWindowPage
