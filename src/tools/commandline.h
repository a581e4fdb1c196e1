#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace quorvale {

// Options of one admin subcommand: "--flag", "--name value" or "--name=value",
// in any order among the positional arguments. Anything else throws UsageError.
class CommandLine {
  public:
    CommandLine(const QStringList &arguments, const QStringList &flags, const QStringList &valued);

    bool isSet(const QString &name) const { return m_values.contains(name); }
    QString value(const QString &name) const { return m_values.value(name); }
    const QStringList &positional() const { return m_positional; }

    // The single positional argument, named `what` in the message when missing.
    QString onlyPositional(const QString &what) const;
    // Throws unless every named option was given.
    void require(const QStringList &names) const;

  private:
    QHash<QString, QString> m_values;
    QStringList m_positional;
};

} // namespace quorvale
