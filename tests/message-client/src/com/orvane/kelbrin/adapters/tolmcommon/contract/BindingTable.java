package com.orvane.kelbrin.adapters.tolmcommon.contract;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** The library's binding table, read out of its C++ source: "name signature" of each row, by class. */
final class BindingTable {
    private static final Pattern NAMESPACE = Pattern.compile("^namespace (\\w+) \\{$(.*?)^\\}  // namespace \\1$",
            Pattern.MULTILINE | Pattern.DOTALL);
    private static final Pattern CONSTANT = Pattern.compile("constexpr char (k\\w+)\\[\\] =((?:\\s*\"[^\"]*\")+);");
    private static final Pattern ROW = Pattern.compile("constexpr Java(Constructor|Method)<[^>]*> k\\w+\\{(.*?)\\};",
            Pattern.DOTALL);
    /** Outside of quotes: signatures have no commas, but aliases have. */
    private static final Pattern ARGUMENT = Pattern.compile("(?:[^\",]|\"[^\"]*\")+");
    private static final Pattern LITERAL = Pattern.compile("\"([^\"]*)\"");

    private BindingTable() {
    }

    static Map<String, Set<String>> read(Path header) throws IOException {
        Map<String, Set<String>> rows = new TreeMap<>();
        // The namespace around all others is taken off: its end is not the next one's.
        String source = Files.readString(header).replaceFirst("(?m)^namespace Binding \\{$", "");
        Matcher namespace = NAMESPACE.matcher(source);
        while (namespace.find()) {
            Map<String, String> constants = constants(namespace.group(2));
            rows.put(constants.get("kClass").replace('/', '.'), rows(namespace.group(2), constants));
        }
        return rows;
    }

    private static Map<String, String> constants(String body) {
        Map<String, String> constants = new HashMap<>();
        Matcher constant = CONSTANT.matcher(body);
        while (constant.find()) {
            constants.put(constant.group(1), joined(constant.group(2)));
        }
        return constants;
    }

    private static Set<String> rows(String body, Map<String, String> constants) {
        Set<String> rows = new TreeSet<>();
        Matcher row = ROW.matcher(body);
        while (row.find()) {
            String[] arguments =
                    ARGUMENT.matcher(row.group(2)).results().map(part -> part.group().trim()).toArray(String[]::new);
            String name = row.group(1).equals("Constructor") ? "<init>" : joined(arguments[1]);
            String signature = arguments[arguments.length - 1];
            rows.add(name + " " + constants.getOrDefault(signature, joined(signature)));
        }
        return rows;
    }

    private static String joined(String literals) {
        StringBuilder text = new StringBuilder();
        Matcher literal = LITERAL.matcher(literals);
        while (literal.find()) {
            text.append(literal.group(1));
        }
        return text.toString();
    }
}
