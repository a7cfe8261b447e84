#pragma once
// What the desktop keeps between runs beside the module's keywords: the recent data files and
// the main window's geometry, in "desktop.ini" next to the keyword file. A session whose
// keywords stay in memory (an empty keyword file, as in tests) keeps these in memory too.

#include <filesystem>
#include <memory>

#include <QByteArray>
#include <QStringList>

class QSettings;

namespace wb::desktop {

class DesktopSettings {
public:
    explicit DesktopSettings(const std::filesystem::path& keywordFile);
    ~DesktopSettings();

    // Most recent first, at most MaxRecentFiles.
    const QStringList& recentFiles() const { return m_recent; }
    void addRecentFile(const QString& path);
    QByteArray geometry() const;
    void setGeometry(const QByteArray& geometry);

    static constexpr int MaxRecentFiles = 6;

private:
    std::unique_ptr<QSettings> m_file; // null: kept in memory only
    QStringList m_recent;
    QByteArray m_geometry;
};

} // namespace wb::desktop
