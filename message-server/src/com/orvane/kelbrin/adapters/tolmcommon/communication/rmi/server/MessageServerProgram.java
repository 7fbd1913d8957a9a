package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.io.IOException;
import java.io.InputStream;
import java.util.concurrent.CountDownLatch;
import picocli.CommandLine;
import picocli.CommandLine.ParameterException;

/** The program: reads the command line, serves until it is told to stop. */
public final class MessageServerProgram {
    private static final int BAD_OPTIONS = 2;
    private static final int NOT_STARTED = 1;

    private MessageServerProgram() {
    }

    public static void main(String[] arguments) throws InterruptedException, IOException {
        ServerOptions options = new ServerOptions();
        CommandLine commandLine = new CommandLine(options).setExpandAtFiles(false);
        try {
            if (CommandLine.printHelpIfRequested(commandLine.parseArgs(arguments))) {
                return;
            }
            options.check();
            start(options, new CallRules(options.answers, options.failures, options.delays));
        } catch (ParameterException failure) {
            refuse(BAD_OPTIONS, failure.getMessage() + " (--help tells the options)");
        } catch (BadOptionException failure) {
            refuse(BAD_OPTIONS, failure.getMessage());
        } catch (CannotStartException failure) {
            refuse(NOT_STARTED, failure.getMessage());
        }
        if (options.stopsWithStdin) {
            readToEnd(System.in);
            System.exit(0);
        }
        new CountDownLatch(1).await();
    }

    private static void start(ServerOptions options, CallRules rules) throws CannotStartException {
        CallRecord record = CallRecord.open(options.record);
        RunningServer server = RunningServer.start(options, new RecordingServer(rules, record));
        Runtime.getRuntime().addShutdownHook(new Thread(() -> stop(server, record)));
        System.out.println("message server ready at rmi://" + options.host + ":" + server.port() + "/" + options.name
                + " (for development and tests)");
        System.out.flush();
    }

    /** Runs however the machine ends. Halts it with 0: by itself it would call an ordered end a failure (143, 130). */
    private static void stop(RunningServer server, CallRecord record) {
        int result = 0;
        server.close();
        try {
            record.close();
        } catch (IOException failure) {
            System.err.println("telvar-message-server: the record is not complete: " + failure.getMessage());
            result = NOT_STARTED;
        }
        System.out.println("stopped");
        System.out.flush();
        Runtime.getRuntime().halt(result);
    }

    private static void readToEnd(InputStream stream) throws IOException {
        while (stream.read() >= 0) {
            // What is said there does not matter.
        }
    }

    private static void refuse(int result, String line) {
        System.err.println("telvar-message-server: " + line);
        System.exit(result);
    }
}
