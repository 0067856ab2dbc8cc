// SPDX-License-Identifier: MIT
#include "updates/Appcast.h"

#include "updates/VersionOrder.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace sayloft {
namespace {

/// One <item>, and what decides whether it is for us.
struct Item {
    Release release;
    QUrl notesPage;
    QString system;
    QString channel;

    [[nodiscard]] bool isForUs() const {
        return !release.version.isEmpty() && channel.isEmpty() &&
               (system.isEmpty() || system == QStringLiteral("linux"));
    }
};

/// Reads one feed. Elements that it does not know are skipped with all that is in them.
class Reader {
public:
    explicit Reader(const QByteArray& xml) : m_xml(xml) {}

    std::optional<std::vector<Release>> read() {
        if (!m_xml.readNextStartElement() || m_xml.name() != QStringLiteral("rss"))
            return std::nullopt;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == QStringLiteral("channel"))
                readChannel();
            else
                m_xml.skipCurrentElement();
        }
        if (m_xml.hasError() || !m_hasChannel)
            return std::nullopt;
        for (Release& release : m_releases) {
            if (release.page.isEmpty())
                release.page = m_page;
        }
        return m_releases;
    }

private:
    [[nodiscard]] bool isSparkle() const {
        return m_xml.namespaceUri() ==
               QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");
    }

    /// Of RSS itself; feeds mix in what others have defined, such as links of Atom.
    [[nodiscard]] bool isPlain() const { return m_xml.namespaceUri().isEmpty(); }

    QString text() { return m_xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }

    void readChannel() {
        m_hasChannel = true;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == QStringLiteral("item"))
                readItem();
            else if (m_xml.name() == QStringLiteral("link") && isPlain())
                m_page = QUrl(text());
            else
                m_xml.skipCurrentElement();
        }
    }

    void readItem() {
        Item item;
        while (m_xml.readNextStartElement()) {
            if (isSparkle())
                readSparkleElement(item);
            else if (isPlain())
                readPlainElement(item);
            else
                m_xml.skipCurrentElement();
        }
        Release& release = item.release;
        if (release.page.isEmpty())
            release.page = item.notesPage;
        if (release.shownVersion.isEmpty())
            release.shownVersion = release.version;
        if (item.isForUs())
            m_releases.push_back(release);
    }

    void readSparkleElement(Item& item) {
        if (m_xml.name() == QStringLiteral("version"))
            item.release.version = text();
        else if (m_xml.name() == QStringLiteral("shortVersionString"))
            item.release.shownVersion = text();
        else if (m_xml.name() == QStringLiteral("releaseNotesLink"))
            item.notesPage = QUrl(text());
        else if (m_xml.name() == QStringLiteral("channel"))
            item.channel = text();
        else if (m_xml.name() == QStringLiteral("os"))
            item.system = text();
        else
            m_xml.skipCurrentElement();
    }

    void readPlainElement(Item& item) {
        if (m_xml.name() == QStringLiteral("description"))
            item.release.notes = text();
        else if (m_xml.name() == QStringLiteral("link"))
            item.release.page = QUrl(text());
        else if (m_xml.name() == QStringLiteral("enclosure"))
            readEnclosure(item);
        else
            m_xml.skipCurrentElement();
    }

    // Older feeds have the versions here.
    void readEnclosure(Item& item) {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        for (const QXmlStreamAttribute& attribute : attributes) {
            const QString value = attribute.value().toString();
            if (attribute.name() == QStringLiteral("version") && item.release.version.isEmpty())
                item.release.version = value;
            else if (attribute.name() == QStringLiteral("shortVersionString") &&
                     item.release.shownVersion.isEmpty())
                item.release.shownVersion = value;
            else if (attribute.name() == QStringLiteral("os"))
                item.system = value;
        }
        m_xml.skipCurrentElement();
    }

    QXmlStreamReader m_xml;
    QUrl m_page;
    bool m_hasChannel = false;
    std::vector<Release> m_releases;
};

}  // namespace

std::optional<std::vector<Release>> parseAppcast(const QByteArray& xml) {
    return Reader(xml).read();
}

std::optional<Release> newestOf(const std::vector<Release>& releases) {
    const auto newest = std::max_element(
        releases.begin(), releases.end(), [](const Release& one, const Release& other) {
            return std::is_lt(compareVersions(one.version, other.version));
        });
    return newest == releases.end() ? std::nullopt : std::optional(*newest);
}

}  // namespace sayloft
