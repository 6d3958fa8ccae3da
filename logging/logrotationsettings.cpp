// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "logrotationsettings.h"

#include "busyindicator.h"
#include "logrotateparser.h"
#include "lossquestion.h"
#include "rotationkeywords.h"
#include "rotationwriter.h"
#include "ui_logrotationsettings.h"

#include <configaccessservice.h>
#include <guiutils.h>
#include <plainmessage.h>
#include <systempaths.h>
#include <treeitem.h>

#include <KFormat>
#include <KLocalizedString>
#include <KMessageWidget>

#include <QFileInfo>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStorageInfo>

namespace {
constexpr int keepAll = -1;

QString sizeText(qint64 bytes)
{
    return KFormat().formatByteSize(static_cast<double>(bytes));
}

QString megabyteText(int size)
{
    return QString::number(size) + QLatin1Char('M');
}

QString presentFile()
{
    return SystemPaths::resolve(SystemPaths::rotationFile());
}
} // namespace

LogRotationSettings::LogRotationSettings(ConfigAccessService &service, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui_LogRotationSettings>())
    , m_service(service)
    , m_messageBar(new KMessageWidget(this))
{
    m_ui->setupUi(this);
    m_messageBar->setObjectName(QStringLiteral("rotationMessageBar"));
    m_messageBar->setWordWrap(true);
    m_messageBar->setCloseButtonVisible(false);
    m_messageBar->hide();
    m_ui->verticalLayout->insertWidget(0, m_messageBar);

    QComboBox *periods = m_ui->periodComboBox;
    periods->addItem(i18nc("rotation period", "day"), QStringLiteral("daily"));
    periods->addItem(i18nc("rotation period", "week"), QStringLiteral("weekly"));
    periods->addItem(i18nc("rotation period", "month"), QStringLiteral("monthly"));
    periods->addItem(i18nc("rotation period", "year"), QStringLiteral("yearly"));
    connectFields();
    loadConfig();
    getLogStatistics();
}

LogRotationSettings::~LogRotationSettings() = default;

void LogRotationSettings::connectFields()
{
    const auto touches = [this](bool Touched::*term) {
        return [this, term] {
            if (!m_loading) {
                m_touched.*term = true;
                updateNotes();
            }
        };
    };
    const auto changed = qOverload<int>(&QSpinBox::valueChanged);
    connect(m_ui->numberCheckBox, &QCheckBox::toggled, this, touches(&Touched::number));
    connect(m_ui->numberOfLogs, changed, this, touches(&Touched::number));
    connect(m_ui->logSizeCheckBox, &QCheckBox::toggled, this, touches(&Touched::size));
    connect(m_ui->logSize, changed, this, touches(&Touched::size));
    connect(m_ui->periodCheckBox, &QCheckBox::toggled, this, touches(&Touched::period));
    connect(m_ui->periodComboBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
            touches(&Touched::period));
    for (QCheckBox *box : {m_ui->numberCheckBox, m_ui->logSizeCheckBox, m_ui->periodCheckBox}) {
        connect(box, &QCheckBox::toggled, this, &LogRotationSettings::enableFields);
    }
}

void LogRotationSettings::enableFields()
{
    m_ui->numberOfLogs->setEnabled(m_ui->numberCheckBox->isChecked());
    m_ui->logSize->setEnabled(m_ui->logSizeCheckBox->isChecked());
    m_ui->periodComboBox->setEnabled(m_ui->periodCheckBox->isChecked());
}

void LogRotationSettings::loadConfig()
{
    const QScopedValueRollback<bool> loading(m_loading, true);
    m_ui->rotationGroupBox->setEnabled(false);
    m_touched = {};
    const LogRotateParser parser(presentFile(), nullptr);
    m_loaded = parser.scan();
    m_error = RotationTerms::problem(m_loaded);
    if (!m_error.isEmpty() && m_error != parser.errorString()) {
        const QString where = m_loaded.isGood() ? parser.configFile() + QLatin1String(": ")
                                                : QString(parser.errorString() + QLatin1Char('\n'));
        m_error.prepend(where);
    }
    const std::unique_ptr<TreeItem> root = m_error.isEmpty() ? LogRotateParser::tree(m_loaded) : nullptr;
    showTerms(root ? RotationTerms::of(*root->child(0)) : RotationTerms());
    enableFields();
    m_ui->rotationGroupBox->setEnabled(root != nullptr);
    updateNotes();
    showError();
}

void LogRotationSettings::showTerms(const RotationTerms &terms)
{
    constexpr int defaultNumber = 4;
    constexpr int defaultSize = 100;
    constexpr int defaultPeriod = 1;
    const int number = RotationTerms::count(terms.number.value_or(QString())).value_or(defaultNumber);
    m_ui->numberCheckBox->setChecked(terms.number.has_value());
    // Only where the file says so: going below "none" by accident must not keep all files.
    const bool all = number == keepAll;
    m_ui->numberOfLogs->setMinimum(all ? keepAll : 0);
    m_ui->numberOfLogs->setSpecialValueText(all ? i18nc("number of log files", "all") : QString());
    m_ui->numberOfLogs->setValue(number); // the field cuts off at its limits

    const qint64 size = RotationTerms::megabytes(terms.size.value_or(QString())).value_or(defaultSize);
    m_ui->logSizeCheckBox->setChecked(terms.size.has_value());
    m_ui->logSize->setValue(static_cast<int>(qMin<qint64>(size, m_ui->logSize->maximum())));

    m_ui->periodCheckBox->setChecked(terms.period.has_value());
    m_ui->periodComboBox->setCurrentIndex(terms.period ? m_ui->periodComboBox->findData(terms.period->keyword)
                                                       : defaultPeriod);
}

void LogRotationSettings::showError()
{
    if (m_error.isEmpty()) {
        m_messageBar->hide();
        return;
    }
    const QString text = i18n("The rotation settings cannot be edited here. %1", m_error);
    PlainMessage::show(m_messageBar, KMessageWidget::Error, text.split(QLatin1Char('\n')));
}

void LogRotationSettings::updateNotes()
{
    QStringList notes;
    if (const std::unique_ptr<TreeItem> root = newTree(m_loaded)) {
        const TreeItem &section = *root->child(0);
        const RotationTerms terms = RotationTerms::of(section);
        const QString decider = RotationTerms::deciding(section);
        if (decider == RotationKeywords::hourly) {
            notes.append(i18n("The file asks for hourly rotation, which this page leaves in place; nothing "
                              "else decides when the log is rotated."));
        } else if (terms.size && terms.period) {
            notes.append(decider == RotationKeywords::size
                             ? i18n("A maximum size and a period exclude each other: the size decides when "
                                    "the log is rotated, and the period is ignored.")
                             : i18n("A maximum size and a period exclude each other: the period decides "
                                    "when the log is rotated, and the size is ignored."));
        }
        notes += keptAsTheyAre(terms);
    }
    m_ui->noteLabel->setText(notes.join(QLatin1Char('\n')));
    m_ui->noteLabel->setVisible(!notes.isEmpty());
}

QStringList LogRotationSettings::keptAsTheyAre(const RotationTerms &present) const
{
    QStringList notes;
    if (present.number && RotationTerms::count(*present.number).value_or(0) > m_ui->numberOfLogs->maximum()) {
        notes.append(i18n("The file sets the number of log files to %1; it stays so unless you change it.",
                          *present.number));
    }
    if (present.size && *present.size != megabyteText(m_ui->logSize->value())) {
        notes.append(i18n("The file sets the maximum log size to %1, shown in whole megabytes; it stays so "
                          "unless you change it.",
                          *present.size));
    }
    return notes;
}

RotationTerms LogRotationSettings::editedTerms(const RotationTerms &present) const
{
    RotationTerms terms = present;
    if (m_touched.number) {
        terms.number.reset();
        if (m_ui->numberCheckBox->isChecked()) {
            terms.number = QString::number(m_ui->numberOfLogs->value());
        }
    }
    if (m_touched.size) {
        terms.size.reset();
        if (m_ui->logSizeCheckBox->isChecked()) {
            terms.size = megabyteText(m_ui->logSize->value());
        }
    }
    if (m_touched.period) {
        terms.period.reset();
        if (m_ui->periodCheckBox->isChecked()) {
            terms.period = RotationTerms::Period{m_ui->periodComboBox->currentData().toString(), QString()};
        }
    }
    return terms;
}

std::unique_ptr<TreeItem> LogRotationSettings::createConfig() const
{
    return newTree(LogRotateParser(presentFile(), nullptr).scan());
}

std::unique_ptr<TreeItem> LogRotationSettings::newTree(const RotationScan &scan) const
{
    std::unique_ptr<TreeItem> root
        = RotationTerms::problem(scan).isEmpty() ? LogRotateParser::tree(scan) : nullptr;
    if (!root) {
        return nullptr;
    }
    TreeItem &section = *root->child(0);
    const QString decider = RotationTerms::deciding(section);
    const RotationTerms terms = editedTerms(RotationTerms::of(section));
    // What decided so far goes on to decide, unless the user had a hand in it.
    const bool free = m_touched.size || m_touched.period;
    for (const auto place : {RotationTerms::Behind, RotationTerms::Before, RotationTerms::Behind}) {
        terms.replaceIn(section, place);
        if (free || RotationTerms::deciding(section) == decider) {
            break;
        }
    }
    return root;
}

QStringList LogRotationSettings::lossesOf(const RotationScan &scan, const TreeItem &section) const
{
    QStringList losses = scan.losses + RotationTerms::lostComments(scan, section);
    const QString before = RotationTerms::deciding(*LogRotateParser::tree(scan)->child(0));
    const QString after = RotationTerms::deciding(section);
    if (!m_touched.size && !m_touched.period && before != after) {
        losses.append(
            i18n("So far “%1” decides when the log is rotated; from now on “%2” would.", before, after));
    }
    return losses;
}

bool LogRotationSettings::saveConfig()
{
    if (!m_error.isEmpty() || !(m_touched.number || m_touched.size || m_touched.period)) {
        return true;
    }
    const QPointer<LogRotationSettings> self(this); // the page may be closed while it asks
    QStringList agreed;
    for (;;) {
        const RotationScan scan = LogRotateParser(presentFile(), nullptr).scan();
        const std::unique_ptr<TreeItem> root = newTree(scan);
        if (!root) {
            showFailure(RotationTerms::problem(scan));
            return false;
        }
        const TreeItem &section = *root->child(0);
        if (RotationTerms::of(section) == RotationTerms::of(*LogRotateParser::tree(scan)->child(0))) {
            return true;
        }
        // Asked again, since the file may change while the user reads what would be lost.
        const QStringList losses = lossesOf(scan, section);
        if (losses == agreed) {
            return write(root.get());
        }
        if (!LossQuestion::isAgreed(this, SystemPaths::rotationFile(), losses) || !self) {
            return false;
        }
        agreed = losses;
    }
}

bool LogRotationSettings::write(TreeItem *root)
{
    if (!RotationWriter::isReadBack(*root)) {
        showFailure(i18n("What would be written could not be read again."));
        return false;
    }
    const QPointer<LogRotationSettings> self(this); // the page may be closed while the helper works
    bool written = false;
    {
        const BusyIndicator busy(this);
        written = RotationWriter(m_service, SystemPaths::rotationFile()).writeConfig(root);
    }
    if (!written && self) {
        showFailure(m_service.errorString());
    }
    return written;
}

void LogRotationSettings::showFailure(const QString &reason)
{
    Gui::Utils::showText(
        this, QMessageBox::Critical, i18n("Error"),
        i18n("The rotation settings were not saved in %1.\n%2", SystemPaths::rotationFile(), reason));
}

void LogRotationSettings::getLogStatistics()
{
    const QFileInfo log(SystemPaths::resolve(SystemPaths::eventLogFile()));
    m_ui->logSizeLabel->setText(log.isFile() ? sizeText(log.size()) : i18n("unknown"));
    const QStorageInfo storage(SystemPaths::resolve(SystemPaths::eventLogDirectory()));
    const bool known = storage.isValid() && storage.isReady() && storage.bytesTotal() > 0;
    m_ui->diskSpaceLabel->setText(known ? i18nc("total and available disk space", "%1 / %2",
                                                sizeText(storage.bytesTotal()),
                                                sizeText(storage.bytesAvailable()))
                                        : i18n("unknown"));
}
