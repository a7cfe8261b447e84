#include "workbench/desktop/DesktopSettings.h"

#include <QSettings>

namespace wb::desktop {

DesktopSettings::DesktopSettings(const std::filesystem::path& keywordFile) {
    if (keywordFile.empty())
        return;
    const std::filesystem::path ini = keywordFile.parent_path() / "desktop.ini";
    m_file = std::make_unique<QSettings>(QString::fromStdString(ini.string()), QSettings::IniFormat);
    m_recent = m_file->value("recentFiles").toStringList();
    m_geometry = m_file->value("geometry").toByteArray();
}

DesktopSettings::~DesktopSettings() = default;

void DesktopSettings::addRecentFile(const QString& path) {
    m_recent.removeAll(path);
    m_recent.prepend(path);
    while (m_recent.size() > MaxRecentFiles)
        m_recent.removeLast();
    if (m_file != nullptr)
        m_file->setValue("recentFiles", m_recent);
}

QByteArray DesktopSettings::geometry() const { return m_geometry; }

void DesktopSettings::setGeometry(const QByteArray& geometry) {
    m_geometry = geometry;
    if (m_file != nullptr)
        m_file->setValue("geometry", geometry);
}

} // namespace wb::desktop
