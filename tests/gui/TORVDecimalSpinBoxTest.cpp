#include "gui/TORVDecimalSpinBox.h"

#include <QtTest>

#include <gtest/gtest.h>

namespace
{

class TORVDecimalSpinBoxTest : public testing::Test
{
protected:
    TORVDecimalSpinBoxTest()
    {
        box.setDecimals(1);
        box.setRange(1.0, 50.0);
    }

    void type(const QString& text)
    {
        box.selectAll();
        QTest::keyClicks(&box, text);
    }

    TORVDecimalSpinBox box;
};

} // namespace

TEST_F(TORVDecimalSpinBoxTest, ShowsADecimalPoint)
{
    box.setValue(2.5);
    EXPECT_EQ(box.cleanText(), QStringLiteral("2.5"));
}

TEST_F(TORVDecimalSpinBoxTest, TakesADecimalPoint)
{
    type(QStringLiteral("2.5"));
    EXPECT_EQ(box.value(), 2.5);
}

TEST_F(TORVDecimalSpinBoxTest, TakesACommaForADecimalPoint)
{
    type(QStringLiteral("2,5"));
    EXPECT_EQ(box.value(), 2.5);
    EXPECT_EQ(box.cleanText(), QStringLiteral("2.5"));
}

TEST_F(TORVDecimalSpinBoxTest, RefusesWhatIsNoNumber)
{
    type(QStringLiteral("2x.y5"));
    EXPECT_EQ(box.value(), 2.5);
}

TEST_F(TORVDecimalSpinBoxTest, RefusesASecondComma)
{
    type(QStringLiteral("2,,5"));
    EXPECT_EQ(box.value(), 2.5);
}
