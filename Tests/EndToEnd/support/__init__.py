"""What the tests from outside stand on: a desktop of their own, the program on it, and eyes and hands for both."""
