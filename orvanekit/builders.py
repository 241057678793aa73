"""Builders with tables and samples, made anew or kept for each setting.

Tables take 8 KB a step, so nothing is kept unless a program asks for it.
Tables and samples depend on their setting alone: a builder that is kept
gives the same bits as a new one.
"""

import collections

import _Orvane

_kept = collections.OrderedDict()
_most = 0


def keep(most):
    """Keep the builders of as many settings, those used last."""
    global _most
    _most = most
    while len(_kept) > _most:
        _kept.popitem(last=False)


def builder(steps, generate=None, *arguments):
    """A builder with tables and, where wanted, samples.

    steps: of the tables
    generate: the name of the method that makes the samples, or None
    arguments: of that method, the seed first
    """
    setting = (steps, generate) + arguments
    made = _kept.pop(setting, None)
    if made is None:
        made = _Orvane.SHBuilder()
        made.GenerateLookUpTables(steps)
        if generate:
            getattr(made, generate)(*arguments)
    if _most:
        _kept[setting] = made
        keep(_most)
    return made
