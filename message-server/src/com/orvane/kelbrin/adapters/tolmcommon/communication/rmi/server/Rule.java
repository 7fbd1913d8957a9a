package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.util.Set;

/** An option's "METHOD=TEXT" or "METHOD/N=TEXT": what is to happen at each call of a method, or at each N-th. */
final class Rule {
    final String method;
    final int every;
    final String text;

    private Rule(String method, int every, String text) {
        this.method = method;
        this.every = every;
        this.text = text;
    }

    /** Throws where the option names another method than these, or is not written like a rule. */
    static Rule read(String option, String value, Set<String> methods) throws BadOptionException {
        int equals = value.indexOf('=');
        if (equals < 0) {
            throw new BadOptionException(option + " " + value + ": has no '='; write METHOD=TEXT");
        }
        String[] parts = value.substring(0, equals).split("/", 2);
        if (!methods.contains(parts[0])) {
            throw new BadOptionException(
                    option + " " + value + ": no such method; take one of " + String.join(", ", methods));
        }
        return new Rule(parts[0], parts.length == 2 ? readEvery(option, value, parts[1]) : 1,
                value.substring(equals + 1));
    }

    Rule withText(String other) {
        return new Rule(method, every, other);
    }

    private static int readEvery(String option, String value, String every) throws BadOptionException {
        try {
            int number = Integer.parseInt(every);
            if (number > 0) {
                return number;
            }
        } catch (NumberFormatException noNumber) {
            // Said below, with the numbers that are none for a rule.
        }
        throw new BadOptionException(option + " " + value + ": behind the '/' goes a number from 1");
    }
}
