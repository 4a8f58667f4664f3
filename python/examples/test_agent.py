"""Tests a small client against a scenario: what does it do while the signal fades and the network is lost?

    PYTHONPATH=python pytest python/examples

A kobd with the imitated router must run, and kobctl must be on the PATH: it plays the scenario.
"""

from __future__ import annotations

from typing import Iterator

import pytest

from kobd import Router


class SignalLamp:
    """The client under test: the lamp of a router, green, yellow or red, by the power of the signal."""

    def __init__(self, router: Router) -> None:
        self._router = router
        self.colours: list[str] = []

    def look(self) -> None:
        power = str(self._router["RSRP"])  # in dBm; "-" without a network
        colour = "off" if power == "-" else "green" if int(power) > -100 else "yellow" if int(power) > -115 else "red"
        if [colour] != self.colours[-1:]:
            self.colours.append(colour)


@pytest.fixture
def router() -> Iterator[Router]:
    with Router() as connected:
        connected.sim.clear()
        yield connected
        connected.sim.clear()


def test_the_lamp_follows_a_signal_that_fades(router: Router) -> None:
    lamp = SignalLamp(router)
    with router.sim.start("signal-fade", speed=10) as scenario:
        while scenario.poll() is None:
            lamp.look()
    assert scenario.returncode == 0
    lamp.look()
    assert lamp.colours[:3] == ["green", "yellow", "red"]
    assert "off" in lamp.colours[3:]
    assert lamp.colours[-3:] == ["red", "yellow", "green"]
