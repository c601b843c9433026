#include "widgets/Announcer.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace {

struct Row
{
    const char *previous;
    const char *next;
    bool isNews;
};

const Row rows[] = {
    {"", "CurrentStatus: Upgrade Successful", true},
    {"CurrentStatus: Upgrade Successful", "CurrentStatus: Upgrade Successful", false},
    {"CurrentStatus: Downloading...0.5 / 10.2 MB/S", "CurrentStatus: Downloading...11.25 / 10.2 MB/S", false},
    {"CurrentStatus: Preparing to download...", "CurrentStatus: Downloading...0.5 / 10.2 MB/S", true},
    {"当前状态: 正在下载1.5 / 2", "当前状态: 正在下载1.75 / 2", false},
    // A number that is part of a name tells devices apart.
    {"Device Detected, ZN58", "Device Detected, ZN59", true},
    {"Device Detected", "", false},
    {"Device Detected", "   ", false},
};

TEST(AnnouncerTest, NumbersAloneAreNoNews)
{
    for (const Row &row : rows)
        EXPECT_EQ(Announcer::isNews(QString::fromUtf8(row.previous), QString::fromUtf8(row.next)), row.isNews)
            << row.previous << " -> " << row.next;
}

TEST(AnnouncerTest, WhatWasAnnouncedLastStaysUntilThereIsNews)
{
    QWidget window;
    Announcer announcer(&window);
    announcer.announce(QStringLiteral("Downloading 1"));
    announcer.announce(QStringLiteral("Downloading 2"));
    EXPECT_EQ(announcer.lastText(), QStringLiteral("Downloading 1"));
    announcer.announce(QStringLiteral("Done"));
    EXPECT_EQ(announcer.lastText(), QStringLiteral("Done"));
}

} // namespace
