#pragma once

// What the libraries' logging categories said while an instance lives: the
// developer diagnostics ("vn.core", "vn.sedra"...) that never reach the
// user's translated log. Installs its own Qt message handler and puts the
// previous one back when it goes.

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

class CategoryMessages
{
public:
    struct Message
    {
        QString category;
        QtMsgType type;
        QString text;
    };

    CategoryMessages()
        : m_previous(qInstallMessageHandler(&CategoryMessages::handle))
    {
        current() = this;
    }
    ~CategoryMessages()
    {
        current() = nullptr;
        qInstallMessageHandler(m_previous);
    }
    CategoryMessages(const CategoryMessages&) = delete;
    CategoryMessages& operator=(const CategoryMessages&) = delete;

    /// The texts said in `category` at `type`, in order.
    QStringList texts(const QString& category, QtMsgType type) const
    {
        QStringList found;
        for (const Message& message : m_messages) {
            if (message.category == category && message.type == type)
                found << message.text;
        }
        return found;
    }
    const QList<Message>& all() const { return m_messages; }

private:
    static CategoryMessages*& current()
    {
        static CategoryMessages* instance = nullptr;
        return instance;
    }
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        if (CategoryMessages* self = current())
            self->m_messages.append({QString::fromLatin1(context.category ? context.category : ""), type, text});
    }

    QtMessageHandler m_previous;
    QList<Message> m_messages;
};
