#pragma once

#include <QByteArray>
#include <QString>

// The server's switch for single functions, read from the cached server document:
// FunctionPool/Functions/Function elements with ID, Run and Message.
struct ServerGateDecision
{
    enum class Result : qint64 { Unreadable = -1, ShowMessage = 0, Run = 1 };
    Result result = Result::Run;
    QString message; // for ShowMessage
};

// Damaged XML is tidied as far as possible; only a document with no root is unreadable. A
// function whose Run is false runs anyway unless its entry also has a Message.
ServerGateDecision evaluateServerGate(const QByteArray &document, qint64 functionNumber);
// The same for a file; a missing file lets every function run.
ServerGateDecision evaluateServerGateFile(const QString &path, qint64 functionNumber);
