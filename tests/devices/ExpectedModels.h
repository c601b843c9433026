#pragma once

/// A second copy of the required table, so that a mistake in the first one is noticed.
struct ExpectedModel
{
    int row;
    const char *name;
    const char *group;
    /// 0 for the maker's own product ids.
    unsigned productId;
    int iapFlag;
};

constexpr ExpectedModel expectedModels[] = {
    {1, "USB", "V1", 0, 0},           {2, "DevMaa", "V2", 0, 0},
    {3, "DevMab", "V3", 0, 0},        {4, "DevMac", "V2", 0, 0},
    {5, "DevMad", "V2", 0, 0},        {6, "DevMae", "V2", 0, 0},
    {7, "DevMaf", "V4", 0, 0},        {8, "DevMag", "V4", 0, 0},
    {9, "DevMah", "V4", 0, 0},        {10, "DevMai", "V5", 0, 0},
    {11, "DevMak", "V2", 0, 0},       {12, "DevMal", "V6", 0, 0},
    {13, "DevMam", "V6", 0, 0},       {14, "DevMan", "V2", 0, 0},
    {15, "DevMdk", "Soc", 0x6780, 0}, {16, "DevMao", "V7", 0, 0},
    {17, "DevMap", "V7", 0, 0},       {18, "DevMaq", "V8", 0, 0},
    {19, "DevMar", "V9", 0, 0},       {20, "DevMas", "V5", 0, 0},
    {21, "DevMat", "V5", 0, 0},       {22, "DevMau", "V10", 0, 0},
    {23, "DevMav", "V10", 0, 0},      {24, "DevMaw", "V5", 0, 0},
    {25, "DevMax", "V5", 0, 0},       {26, "DevMay", "V5", 0, 0},
    {27, "DevMaz", "V5", 0, 0},       {28, "DevMdl", "V5", 0, 0},
    {29, "DevMba", "V11", 0, 0},      {30, "DevMbb", "V5", 0, 0},
    {31, "ZN58", "V5", 0, 0},         {32, "DevMbc", "V12", 0, 0},
    {33, "DevMbd", "V12", 0, 0},      {34, "DevMbe", "V13", 0, 0},
    {35, "DevMbf", "V13", 0, 0},      {36, "DevMbg", "V13", 0, 0},
    {37, "DevMbh", "V13", 0, 0},      {38, "DevMbi", "V13", 0, 0},
    {39, "DevMbj", "V14", 0, 0},      {40, "DevMbk", "V2", 0, 0},
    {41, "DevMbl", "V14", 0, 0},      {42, "DevMbm", "V14", 0, 0},
    {43, "DevMbn", "V15", 0, 0},      {44, "DevMbo", "V2", 0, 0},
    {45, "DevMbp", "V5", 0, 0},       {46, "DevMbq", "V16", 0, 0},
    {47, "DevMbr", "V5", 0, 0},       {48, "DevMbs", "V5", 0, 0},
    {49, "DevMbt", "V15", 0, 0},      {50, "DevMbu", "V2", 0, 0},
    {51, "DevMbw", "V2", 0, 0},       {52, "DevMbx", "V17", 0, 0},
    {53, "DevMby", "V17", 0, 0},      {54, "DevMbz", "V13", 0, 0},
    {55, "DevMca", "V13", 0, 0},      {56, "DevMdm", "Soc", 0x6781, 0},
    {57, "DevMcb", "V9", 0, 0},       {58, "DevMdm", "V2", 0, 0},
    {59, "DevMcc", "V9", 0, 0},       {60, "DevMcd", "V14", 0, 0},
    {61, "DevMce", "V9", 0, 0},       {62, "DevMcf", "V5", 0, 0},
    {63, "DevMcg", "V2", 0, 0},       {64, "DevMch", "V2", 0, 0},
    {65, "DevMci", "V6", 0, 0},       {66, "DevMcj", "V6", 0, 0},
    {67, "DevMck", "V6", 0, 0},       {68, "DevMcl", "V6", 0, 0},
    {69, "DevMcm", "V6", 0, 0},       {70, "DevMcn", "V13", 0, 0},
    {71, "DevMco", "V18", 0, 0},      {72, "DevMcp", "V18", 0, 0},
    {73, "DevMcq", "V18", 0, 0},      {74, "DevMcr", "V18", 0, 0},
    {75, "DevMcs", "V7", 0, 0},       {76, "DevMct", "V7", 0, 0},
    {77, "DevMdn", "V19", 0, 0},      {78, "DevMdo", "V2", 0, 0},
    {79, "DevMdp", "V2", 0, 0},       {80, "DevMcu", "V18", 0, 0},
    {81, "DevMcv", "V2", 0, 0},       {82, "DevMcw", "V2", 0, 0},
    {83, "DevMcx", "V2", 0, 0},       {84, "DevMcy", "V20", 0, 0},
    {85, "DevMcz", "V20", 0, 0},      {86, "DevMda", "V20", 0, 0},
    {87, "DevMdb", "V7", 0, 0},       {88, "DevMdc", "V7", 0, 0},
    {89, "DevMdd", "V7", 0, 0},       {90, "DevMdq", "V19", 0, 1},
    {91, "DevMde", "V19", 0, 1},      {92, "DevMdf", "V19", 0, 1},
    {93, "DevMdg", "V19", 0, 1},      {94, "DevMdr", "V19", 0, 1},
    {95, "DevMds", "V19", 0, 1},      {96, "DevMdt", "V19", 0, 1},
    {97, "DevMdu", "V19", 0, 1},      {98, "DevMdh", "V2", 0, 1},
    {99, "DevMdi", "V2", 0, 1},       {100, "DevMdj", "Soc", 0x8899, 0},
};
