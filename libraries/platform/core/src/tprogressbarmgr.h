#pragma once

#include "vncore_export.h"

#include <QString>

#include <functional>

/// Progress of a long piece of work, in whole steps. The command line turns on
/// the terminal bar (drawn on standard error when it is a terminal); a GUI or a
/// test can listen instead. By default nothing is shown, so libraries may
/// report progress freely.
class VNCORE_EXPORT TProgressBarMgr
{
public:
    using Listener = std::function<void(int step, int steps, const QString& text)>;

    TProgressBarMgr(int steps, const QString& text);
    ~TProgressBarMgr();
    TProgressBarMgr(const TProgressBarMgr&) = delete;
    TProgressBarMgr& operator=(const TProgressBarMgr&) = delete;

    /// Moves to `step` (clamped to 0..steps); a non-empty `text` replaces the title.
    void setProgress(int step, const QString& text = QString());

    int steps() const { return m_steps; }
    int progress() const { return m_step; }
    QString text() const { return m_text; }

    static void setTerminalOutput(bool enabled);
    static bool terminalOutput();
    /// Replaces the process-wide listener (an empty function removes it).
    static void setListener(const Listener& listener);

    /// The bar as drawn: "Loading database... [#######.......]  3/5"; the step
    /// is clamped to 0..steps, and no steps at all is drawn as a full bar.
    static QString render(int step, int steps, const QString& text, int width = 30);

private:
    void notify();

    int m_steps;
    int m_step = 0;
    QString m_text;
    bool m_drawn = false;
};
