#include <QFile>
#include <QImage>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

void expectImage(const QString &name, const QSize &size)
{
    const QImage image(QStringLiteral(":/images/") + name);
    ASSERT_FALSE(image.isNull()) << name.toStdString();
    EXPECT_EQ(image.size(), size) << name.toStdString();
}

void expectImageAndItsFineForm(const QString &stem, const QSize &size)
{
    expectImage(stem + QStringLiteral(".png"), size);
    expectImage(stem + QStringLiteral("@2x.png"), size * 2);
}

TEST(ImagesTest, TheStartButtonHasThreeImagesForEachLanguage)
{
    for (const char *stem : {"Button", "IsButton", "ClickButton", "ENButton", "ENIsButton", "ENClickButton"})
        expectImageAndItsFineForm(QLatin1String(stem), QSize(115, 55));
}

TEST(ImagesTest, TheChooseFileButtonHasThreeImages)
{
    for (const char *stem : {"ChoseFile", "IsChoseFile", "ChoseFileClick"})
        expectImageAndItsFineForm(QLatin1String(stem), QSize(30, 27));
}

TEST(ImagesTest, TheDropDownArrowHasTwoImages)
{
    for (const char *stem : {"XL", "XLChose"})
        expectImageAndItsFineForm(QLatin1String(stem), QSize(27, 27));
}

TEST(ImagesTest, TheProgramIconIsThereInSevenSizes)
{
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        expectImage(QStringLiteral("quillmarsh-%1.png").arg(size), QSize(size, size));
}

TEST(ImagesTest, AButtonsStatesLookDifferent)
{
    for (const char *form : {"%1", "EN%1"}) {
        const auto image = [form](const char *stem) {
            return QImage(QStringLiteral(":/images/") + QString::fromLatin1(form).arg(QLatin1String(stem)) +
                          QStringLiteral(".png"));
        };
        EXPECT_NE(image("Button"), image("IsButton"));
        EXPECT_NE(image("Button"), image("ClickButton"));
        EXPECT_NE(image("IsButton"), image("ClickButton"));
    }
}

TEST(ImagesTest, AllImagesHaveTheBlueOfTheProgressPicture)
{
    EXPECT_EQ(QImage(QStringLiteral(":/images/Button.png")).pixelColor(10, 10), QColor(45, 99, 167));
    EXPECT_EQ(QImage(QStringLiteral(":/images/ENButton.png")).pixelColor(10, 10), QColor(45, 99, 167));
    EXPECT_EQ(QImage(QStringLiteral(":/images/XLChose.png")).pixelColor(3, 3), QColor(45, 99, 167));
    EXPECT_EQ(QImage(QStringLiteral(":/images/quillmarsh-64.png")).pixelColor(6, 32), QColor(45, 99, 167));
}

} // namespace
