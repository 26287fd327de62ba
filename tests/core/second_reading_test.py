"""Time zones and statistics against what another language makes of them."""

import unittest

import figures
import proof
import zones


class SecondReading(unittest.TestCase):
    def check(self, row, least):
        self.assertTrue(row.is_clean(), row)
        self.assertGreater(row.count, least)

    def test_every_time_zone_agrees_with_a_second_reading(self):
        self.check(*zones.all_zones(), 500_000)

    def test_statistics_agree_with_a_second_computation(self):
        self.check(*figures.random_periods(proof.Budget(0, 20261124)), 199)


if __name__ == "__main__":
    unittest.main(verbosity=2)
