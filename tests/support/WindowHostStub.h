#pragma once

// Header only: included by window tests alone (the support library itself has no widgets).

#include "windows/common/ReportWindowHost.h"

#include <QList>
#include <QWidget>

namespace sendrel::test {

// A frame and run browser for one report window under test: it counts the windows, keeps the
// two places, shows the pointer as the application's cursor and records help topics. Child
// windows stay windows of their own.
class WindowHostStub : public ReportWindowHost {
public:
    ~WindowHostStub() override
    {
        m_pointer = ApplyMousePointer(m_pointer, kPointerDefault);
    }

    void AddOpenWindow() override { ++NumOpenWindows; }
    void RemoveOpenWindow() override { --NumOpenWindows; }
    QPointer<QWidget> &LeftForm() override { return Left; }
    QPointer<QWidget> &RightForm() override { return Right; }
    void SetMousePointer(int pointer) override
    {
        m_pointer = ApplyMousePointer(m_pointer, pointer);
        Pointers.append(pointer);
    }
    int MousePointer() const override { return m_pointer; }
    void ShowHelpTopic(int topic) override { HelpTopics.append(topic); }
    void AddChildWindow(QWidget *) override {}

    int NumOpenWindows = 0;
    QPointer<QWidget> Left;
    QPointer<QWidget> Right;
    QList<int> Pointers;      // every pointer asked for, in order
    QList<int> HelpTopics;

private:
    int m_pointer = kPointerDefault;
};

}  // namespace sendrel::test
