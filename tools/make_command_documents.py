#!/usr/bin/env python3
"""Makes what describes the command line from one file: the texts of --help as C++, the manual page, the completions.

make_command_documents.py COMMANDS VERSION FOLDER
"""
import pathlib
import re
import sys
import textwrap
import tomllib
import unicodedata

WIDTH = 100


def text_in(table, language):
    """The text in the language; where there is one for both, that."""
    return table.get(language, table["en"])


def synopsis(command, language):
    """The words behind the program's name, each of which stays on its line."""
    words = [command["name"]] if command["name"] else []
    if "argument" in command:
        words.append(text_in(command["argument"], language))
    for option in command.get("option", []):
        value = " " + text_in(option["value"], language) if "value" in option else ""
        words.append(f"[{option['name']}{value}]" + ("…" if option.get("repeats") else ""))
    return words


def columns(text):
    return sum(2 if unicodedata.east_asian_width(each) in "WF" else 1 for each in text)


def wrapped(words, first, following, glue=" "):
    """Lines that are no wider than a terminal."""
    lines = [first]
    for word in words:
        space = glue if lines[-1].strip() and lines[-1] != following else ""
        if columns(lines[-1] + space + word) > WIDTH and lines[-1].strip():
            lines.append(following)
            space = ""
        lines[-1] += space + word
    return lines


def chinese_pieces(text):
    """Characters that a line may break behind; Latin words stay whole, and no line begins with a punctuation mark."""
    return re.findall(r"(?:[\x21-\x7e]+ ?|.)[，。；：、（）？]*", text)


def help_text(document, language):
    lines = ["Usage:" if language == "en" else "用法："]
    for command in document["command"]:
        lead = "  brevlin " + command["name"] if command["name"] else "  brevlin"
        lines += wrapped(synopsis(command, language)[1 if command["name"] else 0:], lead, " " * (len(lead) + 1))
        words = chinese_pieces(command["help"]["zh"]) if language == "zh" else command["help"]["en"].split()
        lines += wrapped(words, " " * 6, " " * 6, "" if language == "zh" else " ")
    lines.append(("Exit status: " if language == "en" else "退出状态：") + document["exit"][language])
    return "\n".join(lines) + "\n"


def source(document):
    return f"""#include "command/line/usage.h"

namespace brevlin {{

std::string_view usage(AppLanguage language)
{{
    static constexpr BilingualText text{{R"text({help_text(document, "zh")})text",
                                        R"text({help_text(document, "en")})text"}};
    return text.in(language);
}}

}} // namespace brevlin
"""


def roff(text):
    """As man(7) has it."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    text = re.sub(r"\*([^*]+)\*", r"\\fB\1\\fR", text)
    text = re.sub(r"(?<![\w$])_([^\s_](?:[^ ]*[^\s_])?(?: [^_]*[^\s_])?)_(?!\w)", r"\\fI\1\\fR", text)
    lines = []
    for paragraph in text.split("\n\n"):
        lines += textwrap.wrap(paragraph, 116, break_long_words=False, break_on_hyphens=False) + [".PP"]
    return "\n".join("\\&" + line if line[0] in ".'" and line != ".PP" else line for line in lines[:-1])


def manual(document, version):
    lines = [f'.TH BREVLIN 1 "{document["manual"]["date"]}" "Brevlin {version}" "User Commands"', ".SH NAME",
             f"brevlin \\- {document['manual']['summary']}", ".SH SYNOPSIS"]
    commands = document["command"]
    for command in commands:
        lines.append(".B brevlin " + roff(command["name"]) if command["name"] else ".B brevlin")
        words = synopsis(command, "en")[1 if command["name"] else 0:]
        if words:
            lines.append(roff(" ".join(words)).replace("…", "..."))
        lines.append(".br")
    lines[-1:] = [".SH DESCRIPTION", roff(document["manual"]["description"]), ".SH COMMANDS"]
    for command in commands:
        if command["name"] and "section" not in command:
            lines += [".TP", f"\\fB{roff(command['name'])}\\fR", roff(command.get("man", command["help"]["en"]))]
            for option in command.get("option", []):
                value = f" \\fI{roff(option['value']['en'])}\\fR" if "value" in option else ""
                lines += [".RS", ".TP", f"\\fB{roff(option['name'])}\\fR{value}", roff(option["man"]), ".RE"]
    for command in commands:
        if "section" in command:
            lines += [f".SH {command['section']}", roff(command["man"])]
            for option in command.get("option", []):
                value = f" \\fI{roff(option['value']['en'])}\\fR" if "value" in option else ""
                lines += [".TP", f"\\fB{roff(option['name'])}\\fR{value}", roff(option["man"])]
    for section in document["manual"]["section"]:
        lines.append(f".SH {section['title']}")
        for entry in section["entry"]:
            lines += [".TP", roff(entry["term"]), roff(entry["text"])]
    return "\n".join(lines) + "\n"


def completed(document):
    """(name, help, choices of the argument or None for a file or a text, options) of each command that completes."""
    for command in document["command"]:
        if command["name"]:
            yield command["name"], command["help"]["en"].split(". ")[0].rstrip("."), command.get("choices"), \
                command.get("option", [])


def bash(document):
    names = " ".join(name for name, *_ in completed(document))
    cases = []
    for name, _, choices, options in completed(document):
        for option in options:
            if "value" in option:
                words = f'-W "{" ".join(option["choices"])}"' if "choices" in option else \
                    "-f" if option["value"]["en"] == "FILE" else '-W ""'
                cases.append(f'        {name}:{option["name"]}) COMPREPLY=($(compgen {words} -- "$word")); return ;;')
    for name, _, choices, options in completed(document):
        words = " ".join([*(choices or []), *(option["name"] for option in options)])
        files = " -f" if name == "import" else ""
        cases.append(f'        {name}:*) COMPREPLY=($(compgen -W "{words}"{files} -- "$word")); return ;;')
    return f"""# Completion of bash(1) for brevlin.
_brevlin()
{{
    local word=${{COMP_WORDS[COMP_CWORD]}}
    if ((COMP_CWORD == 1)); then
        COMPREPLY=($(compgen -W "{names} --help" -- "$word"))
        return
    fi
    case ${{COMP_WORDS[1]}}:${{COMP_WORDS[COMP_CWORD-1]}} in
{chr(10).join(cases)}
    esac
}}
complete -F _brevlin brevlin
"""


def zsh(document):
    def quoted(text):
        return text.replace("'", "'\\''").replace(":", "\\:").replace("[", "\\[").replace("]", "\\]")

    lines = ["#compdef brevlin", "", "local -a commands", "commands=("]
    lines += [f"    '{name}:{quoted(help)}'" for name, help, *_ in completed(document)]
    lines += [")", "if ((CURRENT == 2)); then", "    _describe command commands", "    return", "fi",
              "local command=${words[2]}", "shift words; ((CURRENT--))", "case $command in"]
    for name, _, choices, options in completed(document):
        specs = []
        for option in options:
            value = ""
            if "value" in option:
                action = f"({' '.join(option['choices'])})" if "choices" in option else \
                    "_files" if option["value"]["en"] == "FILE" else " "
                value = f":{option['value']['en'].split('|')[0].lower()}:{action}"
            summary = quoted(re.sub(r"[*_]", "", option["man"]).split(". ")[0].split(":")[0])
            specs.append(f"'{'*' if option.get('repeats') else ''}{option['name']}[{summary}]{value}'")
        if choices:
            specs.append(f"'1:section:({' '.join(choices)})'")
        elif name == "import":
            specs.append("'1:file:_files'")
        if specs:
            lines += [f"    {name}) _arguments {' '.join(specs)} ;;"]
    lines += ["esac"]
    return "\n".join(lines) + "\n"


def fish(document):
    def quoted(text):
        return text.replace("\\", "\\\\").replace("'", "\\'")

    lines = ["# Completion of fish(1) for brevlin.", "complete -c brevlin -f"]
    for name, help, choices, options in completed(document):
        lines.append(f"complete -c brevlin -n __fish_use_subcommand -a '{name}' -d '{quoted(help)}'")
        seen = f"-n '__fish_seen_subcommand_from {name}'"
        if choices:
            lines.append(f"complete -c brevlin {seen} -a '{' '.join(choices)}'")
        if name == "import":
            lines.append(f"complete -c brevlin {seen} -F")
        for option in options:
            value = ""
            if "value" in option:
                value = f" -x -a '{' '.join(option['choices'])}'" if "choices" in option else \
                    " -r -F" if option["value"]["en"] == "FILE" else " -x"
            lines.append(f"complete -c brevlin {seen} -l {option['name'][2:]}{value}")
    return "\n".join(lines) + "\n"


def main():
    commands, version, folder = sys.argv[1:]
    document = tomllib.loads(pathlib.Path(commands).read_text(encoding="utf-8"))
    made = {"usage_text.cpp": source(document), "brevlin.1": manual(document, version), "brevlin.bash": bash(document),
            "_brevlin": zsh(document), "brevlin.fish": fish(document)}
    for name, content in made.items():
        (pathlib.Path(folder) / name).write_text(content, encoding="utf-8")


if __name__ == "__main__":
    main()
