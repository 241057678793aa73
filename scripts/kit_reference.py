"""Prints the reference page of orvanekit, out of its docstrings, as Markdown."""

import inspect
import sys

sys.path.insert(0, ".")

import orvanekit

SUBJECTS = [
    ("Coefficients", "coefficients make_set spectrum extremes"),
    ("Windows", "filtered dering hann lanczos heat cap clamped_cosine laplacian"),
    ("From and to pictures", "projected read_image write_image globe map_picture "
     "write_page"),
    ("Functions of sets", "combined product fitted"),
    ("Rotations", "rotation rotation_between rotation_matrix rotation_zyz rotation_xyz"),
    ("Conventions and files", "exported imported save load load_with_notes"),
]


def signature(function):
    names, _, more, defaults = inspect.getargspec(function)
    first = len(names) - len(defaults or ())
    words = names[:first] + ["%s=%s" % pair for pair in zip(
        names[first:], map(shown, defaults or ()))]
    return "%s(%s)" % (function.__name__, ", ".join(
        words + (["**" + more] if more else [])))


def shown(value):
    return ("(%s)" % ", ".join("%.6g" % each for each in value)
            if isinstance(value, tuple) else repr(value))


def page():
    print "# orvanekit: what users do next with a set\n"
    print "(This page is made by `scripts/reference.sh` from the package's docstrings.)\n"
    print "```text\n%s\n```" % inspect.getdoc(orvanekit)
    print "\nTasks, with pictures: [recipes](recipes.md). Many machines: [batches](farm.md)."
    for subject, names in SUBJECTS:
        print "\n## %s" % subject
        for name in names.split():
            function = getattr(orvanekit, name)
            print "\n### %s\n\n```python\n%s\n```\n" % (name, signature(function))
            print "```text\n%s\n```" % inspect.getdoc(function)
    shown_names = set(" ".join(names for _, names in SUBJECTS).split())
    missing = set(orvanekit.__all__) - shown_names - set(["Extremes"])
    if missing:
        sys.exit("not on the page: %s" % ", ".join(sorted(missing)))


if __name__ == "__main__":
    page()
