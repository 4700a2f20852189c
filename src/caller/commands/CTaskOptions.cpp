#include "caller/commands/CTaskOptions.h"

#include "caller/picture/CPictureLibrary.h"

void CTaskOptions::AddTo(CLI::App& app)
{
    const std::string group = "What is found out (by default --basic --thumbs)";
    app.add_flag("--basic", m_isBasic, "Streams, HDR, tags, chapters; always, and alone when nothing else is chosen")
        ->group(group);
    app.add_flag("--thumbs", m_isPicture, "A small picture of each film")->group(group);
    app.add_flag("--bars", m_isBars, "The picture between the black bars")->group(group);
}

CTaskSet CTaskOptions::GetTasks() const
{
    const bool isUsual = !m_isBasic && !m_isBars && !m_isPicture;
    CTaskSet tasks = TaskKind::Basic;
    if (m_isBars)
        tasks = tasks | TaskKind::Bars;
    if (m_isPicture || isUsual)
    {
        // Otherwise each film would be one that failed.
        CPictureLibrary::Get();
        tasks = tasks | TaskKind::Picture;
    }
    return tasks;
}
