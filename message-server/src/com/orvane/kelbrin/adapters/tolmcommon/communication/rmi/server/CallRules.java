package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Collections;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** What the server does with a call: how long it takes, whether it fails, and the text it returns. Any thread. */
final class CallRules {
    private static final Set<String> ANSWERING = inOrder(
            "onStartup", "onUserLogon", "onDataCollected", "onExtendedDataCollected", "onDesktopPoll",
            "onActionPerformed");
    private static final Set<String> ALL = inOrder(
            "onStartup", "onUserLogon", "onUserLogoff", "onUserDisconnect", "onUserReconnect", "onDataCollected",
            "onExtendedDataCollected", "refreshSession", "onDesktopPoll", "onActionPerformed");

    private final Map<String, Rule> answers = new HashMap<>();
    private final Map<String, Rule> failures = new HashMap<>();
    private final Map<String, Rule> delays = new HashMap<>();
    private final Map<String, Integer> calls = new HashMap<>();

    CallRules(List<String> answerOptions, List<String> failureOptions, List<String> delayOptions)
            throws BadOptionException {
        for (String option : answerOptions) {
            Rule rule = Rule.read("--answer", option, ANSWERING);
            addOnce(answers, rule.text.startsWith("@") ? rule.withText(readText(rule)) : rule, "--answer");
        }
        for (String option : failureOptions) {
            Rule rule = Rule.read("--fail", option, ALL);
            addOnce(failures, rule, "--fail");
        }
        for (String option : delayOptions) {
            Rule rule = Rule.read("--delay", option, ALL);
            checkDelay(rule);
            addOnce(delays, rule, "--delay");
        }
    }

    /** Takes the time, throws the failure or returns the text that the rules have for this call; null without one. */
    String obey(String method) {
        int call = count(method);
        String delay = find(delays, method, call);
        if (delay != null) {
            sleep(Long.parseLong(delay));
        }
        String failure = find(failures, method, call);
        if (failure != null) {
            throw new IllegalStateException(failure);
        }
        return find(answers, method, call);
    }

    private static String find(Map<String, Rule> rules, String method, int call) {
        Rule rule = rules.get(method);
        return rule != null && call % rule.every == 0 ? rule.text : null;
    }

    private int count(String method) {
        synchronized (calls) {
            return calls.merge(method, 1, Integer::sum);
        }
    }

    private static void sleep(long milliseconds) {
        try {
            Thread.sleep(milliseconds);
        } catch (InterruptedException interruption) {
            Thread.currentThread().interrupt();
        }
    }

    private static void addOnce(Map<String, Rule> rules, Rule rule, String option) throws BadOptionException {
        if (rules.putIfAbsent(rule.method, rule) != null) {
            throw new BadOptionException(option + " " + rule.method + ": given twice; leave one out");
        }
    }

    private static String readText(Rule rule) throws BadOptionException {
        Path file = Path.of(rule.text.substring(1));
        try {
            return Files.readString(file, StandardCharsets.UTF_8);
        } catch (IOException failure) {
            throw new BadOptionException(
                    "--answer " + rule.method + ": " + file + " cannot be read as UTF-8 text; name a file that can be");
        }
    }

    private static void checkDelay(Rule rule) throws BadOptionException {
        try {
            if (Long.parseLong(rule.text) >= 0) {
                return;
            }
        } catch (NumberFormatException noNumber) {
            // Said below, with the numbers that are no delay.
        }
        throw new BadOptionException(
                "--delay " + rule.method + "=" + rule.text + ": behind the '=' goes a number of milliseconds");
    }

    private static Set<String> inOrder(String... names) {
        return Collections.unmodifiableSet(new LinkedHashSet<>(Arrays.asList(names)));
    }
}
