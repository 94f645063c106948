// Whether the translation that the program ships is whole: what the sources say is held against it anew each time.
#include "support/ProcessRun.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <vector>

namespace
{

const QString Sources = QStringLiteral(TORV_SOURCE_DIR "/src");
const QString Finnish = QStringLiteral(TORV_SOURCE_DIR "/resources/translations/torv3d_fi.ts");

struct Message
{
    QString context;
    QString source;
    QStringList translations; // one, or one for each plural form
    bool isFinished = true;

    QString words() const { return context + QLatin1String(": \"") + source + QLatin1Char('"'); }
};

Message readMessage(QXmlStreamReader& xml, const QString& context)
{
    Message message;
    message.context = context;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.isFinished = !xml.attributes().hasAttribute(QLatin1String("type"));
            message.translations << xml.readElementText(QXmlStreamReader::IncludeChildElements);
        } else {
            xml.skipCurrentElement();
        }
    }
    return message;
}

std::vector<Message> readMessages(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(path);
    QXmlStreamReader xml(&file);
    std::vector<Message> messages;
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            messages.push_back(readMessage(xml, context));
        }
    }
    EXPECT_FALSE(xml.hasError()) << qUtf8Printable(xml.errorString());
    return messages;
}

// The shipped file after lupdate has brought it up to the sources: a text that is not translated has joined it, one
// that is in no source any more has left it.
std::vector<Message> updatedMessages()
{
    const QTemporaryDir directory;
    const QString copy = directory.filePath(QStringLiteral("torv3d_fi.ts"));
    EXPECT_TRUE(QFile::copy(Finnish, copy));
    const ProcessRun::Outcome outcome = ProcessRun(QStringLiteral(TORV_LUPDATE))(
        {QStringLiteral("-silent"), QStringLiteral("-no-obsolete"), Sources, QStringLiteral("-ts"), copy});
    EXPECT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
    return readMessages(copy);
}

QStringList placesIn(const QString& text)
{
    static const QRegularExpression place(QStringLiteral("%(?:L?\\d+|n)"));
    QStringList places;
    for (auto match = place.globalMatch(text); match.hasNext();) {
        places << match.next().captured();
    }
    places.sort();
    return places;
}

bool hasMnemonic(const QString& text)
{
    static const QRegularExpression mnemonic(QStringLiteral("&[^&\\s]"));
    return text.contains(mnemonic);
}

} // namespace

TEST(TORVTranslation, HoldsAFinishedTranslationOfEachTextOfTheSources)
{
    const std::vector<Message> messages = updatedMessages();
    EXPECT_GE(messages.size(), 20U) << "lupdate has not read the sources";
    for (const Message& message : messages) {
        EXPECT_TRUE(message.isFinished) << qUtf8Printable(message.words());
        for (const QString& translation : message.translations) {
            EXPECT_FALSE(translation.trimmed().isEmpty()) << qUtf8Printable(message.words());
        }
    }
}

TEST(TORVTranslation, HoldsNoTextThatTheSourcesHaveNot)
{
    EXPECT_EQ(readMessages(Finnish).size(), updatedMessages().size());
}

TEST(TORVTranslation, KeepsThePlacesOfInsertedValues)
{
    for (const Message& message : readMessages(Finnish)) {
        for (const QString& translation : message.translations) {
            EXPECT_EQ(placesIn(translation), placesIn(message.source)) << qUtf8Printable(message.words());
        }
    }
}

TEST(TORVTranslation, HasAMnemonicWhereTheSourceHasOne)
{
    for (const Message& message : readMessages(Finnish)) {
        EXPECT_EQ(hasMnemonic(message.translations.value(0)), hasMnemonic(message.source))
            << qUtf8Printable(message.words());
    }
}

TEST(TORVTranslation, UsesTheWordsOfMeteorologists)
{
    QMap<QString, QString> names;
    for (const Message& message : readMessages(Finnish)) {
        if (message.context == QLatin1String("TORVDataType")) {
            names.insert(message.source, message.translations.value(0));
        }
    }
    EXPECT_EQ(names.value(QStringLiteral("Reflectivity")), QLatin1String("Heijastavuus"));
    EXPECT_EQ(names.value(QStringLiteral("Radial velocity")), QStringLiteral("Säteisnopeus"));
    EXPECT_EQ(names.value(QStringLiteral("Spectrum width")), QLatin1String("Spektrin leveys"));
    EXPECT_EQ(names.value(QStringLiteral("Rainfall rate")), QLatin1String("Sateen intensiteetti"));
    EXPECT_EQ(names.value(QStringLiteral("Not available")), QLatin1String("Ei saatavilla"));
}
