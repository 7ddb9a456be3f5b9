"""Several programs at once."""

import concurrent.futures
import json
import os
import unittest

from harness import OrvaneTest, file, preset

TOGETHER = 8


class Together(OrvaneTest):
    def test_runs_without_input_get_different_numbers(self):
        self.write_presets(preset("P", "{AutoNo}", file("x")), ORVAutomaticVars={"AutoNo": "99"})
        with concurrent.futures.ThreadPoolExecutor(TOGETHER) as pool:
            results = list(pool.map(lambda _: self.create("0", "--no-input", "--json"), range(TOGETHER)))
        self.assertEqual([(result.status, result.err) for result in results], [(0, "")] * TOGETHER)
        numbers = sorted(json.loads(result.out)["variables"][0]["value"] for result in results)
        self.assertEqual(numbers, [str(number) for number in range(100, 100 + TOGETHER)])
        self.assertEqual(sorted(os.listdir(self.target)), numbers)
        self.assertEqual(self.counters(), {"AutoNo": str(99 + TOGETHER)})

    def test_where_all_want_the_same_folder_nobody_spoils_the_winner(self):
        self.write_presets(preset("P", "top", *[file(f"x{i}") for i in range(50)]))
        with concurrent.futures.ThreadPoolExecutor(TOGETHER) as pool:
            statuses = [result.status for result in pool.map(lambda _: self.create("0"), range(TOGETHER))]
        self.assertLessEqual(set(statuses), {0, 1})
        # Programs that stand in each other's way may all fail; then nothing is left.
        self.assertLessEqual(statuses.count(0), 1)
        self.assertEqual(len(self.listing()), 51 if 0 in statuses else 0)


if __name__ == "__main__":
    unittest.main()
