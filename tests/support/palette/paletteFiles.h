#pragma once
#include "palette.h"
#include "testCase.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

/// What tests of palette files share: a directory for each function, and files with a content.
namespace palette_file_tests {
using table_t = std::vector<unsigned int>;
using keyed_t = std::map<std::string, unsigned int>;

inline const QByteArray emptyTables = "<colorTable/><keyedColorTable/>";
constexpr bool isQt6 = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);

QByteArray documentOf(const QByteArray& content);
/// As many attributes of an element, each with another name.
QByteArray attributes(int count);

void write(const std::string& fileName, const QByteArray& text);
QByteArray contentOf(const std::string& fileName);

/// Sets search paths while it lives.
class searchPaths_t
{
public:
    searchPaths_t(const QString& prefix, const QStringList& paths);
    ~searchPaths_t();
    searchPaths_t(const searchPaths_t&) = delete;
    searchPaths_t& operator=(const searchPaths_t&) = delete;

private:
    const QString m_prefix;
};

/// Does something as a user for whom permissions count.
template <typename operation_t>
bool asOrdinaryUser(const operation_t& operation)
{
    const uid_t user = geteuid();
    if (user == 0 && seteuid(65534) != 0)
        qFatal("can't become another user");
    const bool result = operation();
    if (seteuid(user) != 0)
        qFatal("can't become root again");
    return result;
}

/// Gives each function an empty directory.
class paletteFileTestCase_t : public testCase_t
{
protected:
    void setUp() override;

    QStringList namesOfFiles() const;
    /// The path of a file in the directory.
    std::string path(const char* name) const;
    /// Loads a file of that content, named a.wp.
    bool load(const QByteArray& text, zorbin_qt_gui::palette_t& palette) const;

    std::unique_ptr<QTemporaryDir> m_directory;
};
} // namespace palette_file_tests

Q_DECLARE_METATYPE(palette_file_tests::table_t)
