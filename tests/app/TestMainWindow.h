#pragma once

#include "app/window/MainWindowLayout.h"
#include "app/window/MainWindowLook.h"
#include "support/LanguageUtilities.h"
#include "widgets/BackgroundWidget.h"
#include "widgets/LocalFileHost.h"

#include <QLineEdit>
#include <QPushButton>

#include <vector>

/// The real layout on a plain widget in place of the main widget, built in the order of its constructor.
class TestMainWindow : public LocalFileHost
{
public:
    struct Options
    {
        QString language = QStringLiteral("en");
        bool chineseLocale = false;
        bool usb = true;
        bool hid = false;
        bool automatic = false;
    };

    explicit TestMainWindow(const Options &options) : background(options.chineseLocale)
    {
        LanguageUtilities::instance().setLanguage(options.language);
        MainWindowLook::applyProgramFont(options.chineseLocale);
        mainWidget = new QWidget(&background);
        mainWidget->setObjectName(QStringLiteral("mainWidget"));
        MainWindowLayout::buildFlashingPage(mainWidget, this, widgets);
        MainWindowLayout::buildWriteTypeBox(mainWidget, options.usb, options.hid, widgets);
        MainWindowLayout::Callbacks callbacks;
        callbacks.iapStateChanged = [this](int state) {
            iapStates.push_back(state);
        };
        MainWindowLayout::buildRest(mainWidget, options.chineseLocale, callbacks, widgets);
        if (options.automatic)
            MainWindowLayout::applyAutomaticMode(widgets);
    }

    void show()
    {
        background.show();
        mainWidget->show();
    }

    void enterLocalFileMode() override
    {
        ++localFileModeEntered;
        widgets.firmwareFileEdit->show();
        widgets.chooseFileButton->show();
    }

    BackgroundWidget background;
    QWidget *mainWidget = nullptr;
    MainWindowWidgets widgets;
    std::vector<int> iapStates;
    int localFileModeEntered = 0;
};
